#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QFont>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

/**
 * \file
 * Fonts by PostScript name: VXFont, VXFontDatabase and the trait masks.
 */

/** Traits to add to or remove from a font (VXFont::withTraits, VXShortcuts::applyFontTraits). */
enum VXFontTraitMask : std::uint64_t
{
    VXItalicFontMask = 0x00000001,   ///< Make it italic.
    VXBoldFontMask = 0x00000002,     ///< Make it bold.
    VXUnboldFontMask = 0x00000004,   ///< Make it regular weight.
    VXUnitalicFontMask = 0x01000000, ///< Make it upright.
};

/**
 * Which fonts exist, by PostScript name, as fontconfig answers. A name exists when
 * fontconfig has a face with that exact PostScript name, or when the name is a family that
 * fontconfig's alias rules bind strongly to an installed face (this is how "Helvetica"
 * exists on a desktop that ships a metric-compatible face under another name), never merely
 * because fontconfig would fall back to a generic family.
 */
class QV_WIDGETS_EXPORT VXFontDatabase
{
public:
    /** An installed face as fontconfig describes it. */
    struct Face
    {
        QString postScriptName;     ///< The face's PostScript name ("NimbusSans-Regular").
        QString family;             ///< The family Qt draws it by.
        int weight = QFont::Normal; ///< A QFont::Weight.
        bool italic = false;        ///< Whether the face is slanted.
    };

    /**
     * The face with that PostScript name, or the face a family of that name is bound to;
     * std::nullopt when no such font exists.
     */
    static std::optional<Face> faceForPostScriptName(const QString &postScriptName);
    /**
     * The face of family with the given weight class (bold or not) and slant; std::nullopt
     * when the family has no such face.
     */
    static std::optional<Face> faceInFamily(const QString &family, bool bold, bool italic);

    /**
     * Makes the fonts an application's tests see independent of the machine: with a list
     * set, exactly those PostScript names exist (family = the name up to its first '-',
     * weight and slant read from the style suffix); std::nullopt restores fontconfig.
     */
    static void setAvailableFontsForTesting(std::optional<QStringList> postScriptNames);
};

/**
 * A font named by its PostScript name at a size in points: what attributed strings and
 * cells carry. Whether a name exists is asked of fontconfig (VXFontDatabase); qfont() is
 * what QPainter and QTextLayout draw with. Stored in a QVariant for attributed strings.
 */
class QV_WIDGETS_EXPORT VXFont
{
public:
    /** An invalid font (empty name, size 0), for containers; isValid() is false. */
    VXFont() = default;

    /** The font of that PostScript name, or std::nullopt when it does not exist. */
    static std::optional<VXFont> fontWithName(const QString &postScriptName, double size);
    /**
     * The face of an installed family (or of a family name fontconfig aliases to one) with
     * the weight class and slant asked for, falling back to the family's regular face;
     * std::nullopt when the family is not installed.
     */
    static std::optional<VXFont> fontWithFamily(const QString &family, bool bold, bool italic,
                                                double size);
    /**
     * The regular face of the desktop's general font at size; its fontName() is the
     * PostScript name fontconfig gives that face. Never fails.
     */
    static VXFont systemFontOfSize(double size);
    /** The bold face of the desktop's general font at size (the regular one if it has none). */
    static VXFont boldSystemFontOfSize(double size);
    /** The size of the desktop's general font in points (12 without a GUI application). */
    static double systemFontSize();
    /**
     * The size for small controls: the desktop's smallest readable font when that is smaller
     * than the general font, else the general size.
     */
    static double smallSystemFontSize();

    /** False only for the default-constructed font. */
    bool isValid() const { return !m_name.isEmpty(); }
    /**
     * The PostScript name the font was asked for ("HelveticaNeue-Bold", "Helvetica"), kept
     * even when another face draws it; for the system font, the PostScript name of the
     * desktop font's face.
     */
    QString fontName() const { return m_name; }
    /** The family of the face that draws the font. */
    QString familyName() const { return m_family; }
    /** The size in points. */
    double pointSize() const { return m_size; }
    /** Whether the face that draws it is bold. */
    bool isBold() const { return m_bold; }
    /** Whether the face that draws it is italic. */
    bool isItalic() const { return m_italic; }

    /** The same face at another size. */
    VXFont withSize(double size) const;
    /**
     * The face of the same family with the traits of a VXFontTraitMask added or removed; the
     * font itself when the family has no such face.
     */
    VXFont withTraits(std::uint64_t traitMask) const;
    /** The mask for withTraits that adds bold and/or italic (0 when neither). */
    static std::uint64_t traitMask(bool bold, bool italic)
    {
        return (bold ? std::uint64_t(VXBoldFontMask) : 0) |
               (italic ? std::uint64_t(VXItalicFontMask) : 0);
    }

    /**
     * The QFont to draw with: the matched face's family, weight and slant at pointSize()
     * (12 points when the size is 0 or less, which Qt refuses).
     */
    QFont qfont() const;

    /** Fonts are equal when name, family, size, weight and slant are. */
    bool operator==(const VXFont &other) const;
    /** The opposite of operator==. */
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
