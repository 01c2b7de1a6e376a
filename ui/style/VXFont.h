#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QFont>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

// The font trait masks of the font manager (applyFontTraits).
enum VXFontTraitMask : std::uint64_t
{
    VXItalicFontMask = 0x00000001,
    VXBoldFontMask = 0x00000002,
    VXUnboldFontMask = 0x00000004,
    VXUnitalicFontMask = 0x01000000,
};

// The question "does a font with this PostScript name exist?", answered by fontconfig.
// A name exists when fontconfig has a face with that exact PostScript name, or when the
// name is a family that fontconfig's alias rules resolve to an installed face (this is how
// "Helvetica" exists on a desktop that ships a metric-compatible face under another name),
// never merely because fontconfig would fall back to a generic family.
class QV_WIDGETS_EXPORT VXFontDatabase
{
public:
    struct Face
    {
        QString postScriptName;
        QString family;
        int weight = QFont::Normal;
        bool italic = false;
    };

    static std::optional<Face> faceForPostScriptName(const QString &postScriptName);
    // The face of family with the given weight class (bold or not) and slant; nullopt when
    // the family has no such face.
    static std::optional<Face> faceInFamily(const QString &family, bool bold, bool italic);

    // Tests decide which PostScript names exist: with a list set, exactly those names exist
    // (family = the name up to its first '-', weight and slant read from the style suffix);
    // std::nullopt restores fontconfig.
    static void setAvailableFontsForTesting(std::optional<QStringList> postScriptNames);
};

// A font named by its PostScript name at a size in points. Whether a name exists is asked
// of fontconfig (VXFontDatabase); qfont() is what QPainter and QTextLayout draw with.
class QV_WIDGETS_EXPORT VXFont
{
public:
    VXFont() = default; // an invalid font (empty name, size 0); only for containers

    // std::nullopt when no font of that PostScript name exists.
    static std::optional<VXFont> fontWithName(const QString &postScriptName, double size);
    // The face of an installed family (or of a family name fontconfig aliases to one) with
    // the weight class and slant asked for, falling back to the family's regular face;
    // std::nullopt when the family is not installed.
    static std::optional<VXFont> fontWithFamily(const QString &family, bool bold, bool italic,
                                                double size);
    static VXFont systemFontOfSize(double size);
    static VXFont boldSystemFontOfSize(double size);
    // The desktop's standard sizes: the general font, and the font of small controls.
    static double systemFontSize();
    static double smallSystemFontSize();

    bool isValid() const { return !m_name.isEmpty(); }
    // The PostScript name the font was asked for ("HelveticaNeue-Bold", "Helvetica") or, for
    // the system font, the PostScript name of the desktop font's face.
    QString fontName() const { return m_name; }
    QString familyName() const { return m_family; }
    double pointSize() const { return m_size; }
    bool isBold() const { return m_bold; }
    bool isItalic() const { return m_italic; }

    // Same face, new size (the font manager's convertFont:toSize:).
    VXFont withSize(double size) const;
    // The face of the same family with the traits of the mask added or removed (the font
    // manager's convertFont:toHaveTrait:); the font itself when the family has no such face.
    VXFont withTraits(std::uint64_t traitMask) const;
    // The mask that adds bold and/or italic.
    static std::uint64_t traitMask(bool bold, bool italic)
    {
        return (bold ? std::uint64_t(VXBoldFontMask) : 0) |
               (italic ? std::uint64_t(VXItalicFontMask) : 0);
    }

    QFont qfont() const;

    bool operator==(const VXFont &other) const;
    bool operator!=(const VXFont &other) const { return !(*this == other); }

private:
    static VXFont fromFace(const VXFontDatabase::Face &face, const QString &name, double size);

    QString m_name;
    QString m_family;
    double m_size = 0.0;
    int m_weight = QFont::Normal; // QFont::Weight
    bool m_bold = false;
    bool m_italic = false;
};

Q_DECLARE_METATYPE(VXFont)
