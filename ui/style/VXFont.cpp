#include "VXFont.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHash>
#include <QMutex>

#include <fontconfig/fontconfig.h>

#include <cmath>
#include <memory>

namespace {

std::optional<QStringList> testingFonts;

// A face that the seam makes exist: "Family-Style", the style read for weight and slant.
VXFontDatabase::Face testingFace(const QString &postScriptName)
{
    VXFontDatabase::Face face;
    face.postScriptName = postScriptName;
    const qsizetype dash = postScriptName.indexOf(u'-');
    face.family = dash < 0 ? postScriptName : postScriptName.left(dash);
    const QString style = dash < 0 ? QString() : postScriptName.mid(dash + 1);
    face.italic =
        style.contains(QLatin1String("Italic")) || style.contains(QLatin1String("Oblique"));
    if (style.contains(QLatin1String("Bold")))
        face.weight = QFont::Bold;
    else if (style.contains(QLatin1String("Medium")))
        face.weight = QFont::Medium;
    else if (style.contains(QLatin1String("Thin")))
        face.weight = QFont::Thin;
    else if (style.contains(QLatin1String("Light")))
        face.weight = QFont::Light;
    return face;
}

struct PatternDeleter
{
    void operator()(FcPattern *p) const { FcPatternDestroy(p); }
};
struct FontSetDeleter
{
    void operator()(FcFontSet *s) const { FcFontSetDestroy(s); }
};
struct ObjectSetDeleter
{
    void operator()(FcObjectSet *s) const { FcObjectSetDestroy(s); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

QString patternString(FcPattern *pattern, const char *object, int index = 0)
{
    FcChar8 *value = nullptr;
    if (FcPatternGetString(pattern, object, index, &value) != FcResultMatch || !value)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char *>(value));
}

VXFontDatabase::Face faceOfPattern(FcPattern *pattern)
{
    VXFontDatabase::Face face;
    face.postScriptName = patternString(pattern, FC_POSTSCRIPT_NAME);
    face.family = patternString(pattern, FC_FAMILY);
    int weight = FC_WEIGHT_REGULAR;
    FcPatternGetInteger(pattern, FC_WEIGHT, 0, &weight);
    // fontconfig's weight scale → the OpenType scale, which QFont::Weight uses.
    face.weight = FcWeightToOpenType(weight);
    int slant = FC_SLANT_ROMAN;
    FcPatternGetInteger(pattern, FC_SLANT, 0, &slant);
    face.italic = slant != FC_SLANT_ROMAN;
    return face;
}

// fontconfig reads the installed fonts once, when it is first asked, and answers the same
// question the same way afterwards; a window asks it the same few questions once per cell
// (each a walk over every installed face). So each answer is kept for the process's life,
// as Qt keeps its own font database. Keyed by the kind of question and its text.
template <typename Answer, typename Ask> Answer remembered(char kind, const QString &text, Ask ask)
{
    static QMutex mutex;
    static QHash<QString, Answer> answers;
    const QString key = QChar(char16_t(kind)) + text;
    {
        const QMutexLocker lock(&mutex);
        if (const auto it = answers.constFind(key); it != answers.cend())
            return *it;
    }
    Answer answer = ask();
    const QMutexLocker lock(&mutex);
    answers.insert(key, answer);
    return answer;
}

// Every installed face matching pattern.
QList<VXFontDatabase::Face> listFaces(FcPattern *pattern)
{
    std::unique_ptr<FcObjectSet, ObjectSetDeleter> objects(FcObjectSetBuild(
        FC_POSTSCRIPT_NAME, FC_FAMILY, FC_WEIGHT, FC_SLANT, static_cast<char *>(nullptr)));
    std::unique_ptr<FcFontSet, FontSetDeleter> set(FcFontList(nullptr, pattern, objects.get()));
    QList<VXFontDatabase::Face> faces;
    if (!set)
        return faces;
    for (int i = 0; i < set->nfont; ++i)
        faces.append(faceOfPattern(set->fonts[i]));
    return faces;
}

const FcChar8 *utf8(const QByteArray &bytes)
{
    return reinterpret_cast<const FcChar8 *>(bytes.constData());
}

// The installed face fontconfig gives for a family name when the name itself or one of the
// aliases it is deliberately substituted with is installed; nullopt when only the generic
// fall-back would answer.
std::optional<VXFontDatabase::Face> askFaceForFamilyAlias(const QString &name)
{
    Pattern pattern(FcPatternCreate());
    const QByteArray bytes = name.toUtf8();
    FcPatternAddString(pattern.get(), FC_FAMILY, utf8(bytes));
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    // The name itself and the aliases fontconfig binds strongly to it (metric-compatible
    // substitutes); the generic fall-back families it appends are weakly bound.
    QStringList accepted;
    FcPatternIter iter;
    if (FcPatternFindIter(pattern.get(), &iter, FC_FAMILY)) {
        const int count = FcPatternIterValueCount(pattern.get(), &iter);
        for (int i = 0; i < count; ++i) {
            FcValue value;
            FcValueBinding binding = FcValueBindingWeak;
            if (FcPatternIterGetValue(pattern.get(), &iter, i, &value, &binding) != FcResultMatch ||
                value.type != FcTypeString || binding == FcValueBindingWeak)
                continue;
            accepted.append(QString::fromUtf8(reinterpret_cast<const char *>(value.u.s)));
        }
    }
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    Pattern match(FcFontMatch(nullptr, pattern.get(), &result));
    if (!match || result != FcResultMatch)
        return std::nullopt;
    VXFontDatabase::Face face = faceOfPattern(match.get());
    if (!accepted.contains(face.family, Qt::CaseInsensitive))
        return std::nullopt;
    return face;
}

std::optional<VXFontDatabase::Face> faceForFamilyAlias(const QString &name)
{
    return remembered<std::optional<VXFontDatabase::Face>>(
        'a', name, [&] { return askFaceForFamilyAlias(name); });
}

// The installed faces whose family (or else PostScript name) is text.
QList<VXFontDatabase::Face> facesWith(bool family, const QString &text)
{
    return remembered<QList<VXFontDatabase::Face>>(family ? 'f' : 'p', text, [&] {
        Pattern pattern(FcPatternCreate());
        const QByteArray bytes = text.toUtf8();
        FcPatternAddString(pattern.get(), family ? FC_FAMILY : FC_POSTSCRIPT_NAME, utf8(bytes));
        return listFaces(pattern.get());
    });
}

// The face of the desktop's general font.
bool hasGuiApplication()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

VXFontDatabase::Face systemFace()
{
    VXFontDatabase::Face face;
    // The desktop's font is known only to a GUI application; elsewhere fontconfig's own
    // default face answers.
    face.family = hasGuiApplication()
                      ? QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()
                      : QStringLiteral("sans-serif");
    face.postScriptName = face.family;
    return remembered<VXFontDatabase::Face>('s', face.family, [&] {
        Pattern pattern(FcPatternCreate());
        const QByteArray bytes = face.family.toUtf8();
        FcPatternAddString(pattern.get(), FC_FAMILY, utf8(bytes));
        FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultNoMatch;
        Pattern match(FcFontMatch(nullptr, pattern.get(), &result));
        if (match && result == FcResultMatch) {
            const VXFontDatabase::Face matched = faceOfPattern(match.get());
            if (!matched.postScriptName.isEmpty())
                face.postScriptName = matched.postScriptName;
            face.family = matched.family.isEmpty() ? face.family : matched.family;
        }
        return face;
    });
}

} // namespace

std::optional<VXFontDatabase::Face> VXFontDatabase::faceForPostScriptName(const QString &name)
{
    if (name.isEmpty())
        return std::nullopt;
    if (testingFonts) {
        if (!testingFonts->contains(name))
            return std::nullopt;
        return testingFace(name);
    }
    for (const Face &face : facesWith(false, name)) {
        if (face.postScriptName == name)
            return face;
    }
    return faceForFamilyAlias(name);
}

std::optional<VXFontDatabase::Face> VXFontDatabase::faceInFamily(const QString &family, bool bold,
                                                                 bool italic)
{
    QList<Face> faces;
    if (testingFonts) {
        for (const QString &name : *testingFonts) {
            const Face face = testingFace(name);
            if (face.family == family)
                faces.append(face);
        }
    } else {
        faces = facesWith(true, family);
    }
    // Among the faces of the right slant and weight class, the one nearest the regular
    // (400) or bold (700) weight.
    const int target = bold ? QFont::Bold : QFont::Normal;
    std::optional<Face> best;
    for (const Face &face : faces) {
        if (face.italic != italic || (face.weight >= QFont::DemiBold) != bold ||
            face.postScriptName.isEmpty())
            continue;
        if (!best || std::abs(face.weight - target) < std::abs(best->weight - target))
            best = face;
    }
    return best;
}

void VXFontDatabase::setAvailableFontsForTesting(std::optional<QStringList> postScriptNames)
{
    testingFonts = std::move(postScriptNames);
}

VXFont VXFont::fromFace(const VXFontDatabase::Face &face, const QString &name, double size)
{
    VXFont font;
    font.m_name = name;
    font.m_family = face.family;
    font.m_size = size;
    font.m_weight = face.weight;
    font.m_bold = face.weight >= QFont::DemiBold;
    font.m_italic = face.italic;
    return font;
}

std::optional<VXFont> VXFont::fontWithName(const QString &postScriptName, double size)
{
    const std::optional<VXFontDatabase::Face> face =
        VXFontDatabase::faceForPostScriptName(postScriptName);
    if (!face)
        return std::nullopt;
    return fromFace(*face, postScriptName, size);
}

std::optional<VXFont> VXFont::fontWithFamily(const QString &family, bool bold, bool italic,
                                             double size)
{
    if (family.isEmpty())
        return std::nullopt;
    if (auto face = VXFontDatabase::faceInFamily(family, bold, italic))
        return fromFace(*face, face->postScriptName, size);
    if (auto face = VXFontDatabase::faceInFamily(family, false, false))
        return fromFace(*face, face->postScriptName, size)
            .withTraits(VXFont::traitMask(bold, italic));
    // A family name such as "Helvetica" that only exists as an alias of another family.
    if (auto font = fontWithName(family, size))
        return font->withTraits(VXFont::traitMask(bold, italic));
    return std::nullopt;
}

VXFont VXFont::systemFontOfSize(double size)
{
    const VXFontDatabase::Face face = systemFace();
    VXFont font = fromFace(face, face.postScriptName, size);
    // The desktop font is the regular face, whatever weight fontconfig reported.
    font.m_weight = QFont::Normal;
    font.m_bold = false;
    font.m_italic = false;
    return font;
}

VXFont VXFont::boldSystemFontOfSize(double size)
{
    return systemFontOfSize(size).withTraits(VXBoldFontMask);
}

double VXFont::systemFontSize()
{
    if (!hasGuiApplication())
        return 12.0;
    const double size = QFontDatabase::systemFont(QFontDatabase::GeneralFont).pointSizeF();
    return size > 0.0 ? size : 12.0;
}

double VXFont::smallSystemFontSize()
{
    const double general = systemFontSize();
    if (!hasGuiApplication())
        return general;
    const double smallest =
        QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont).pointSizeF();
    return smallest > 0.0 && smallest < general ? smallest : general;
}

VXFont VXFont::withSize(double size) const
{
    VXFont font = *this;
    font.m_size = size;
    return font;
}

VXFont VXFont::withTraits(std::uint64_t traitMask) const
{
    bool bold = m_bold, italic = m_italic;
    if (traitMask & VXBoldFontMask)
        bold = true;
    if (traitMask & VXUnboldFontMask)
        bold = false;
    if (traitMask & VXItalicFontMask)
        italic = true;
    if (traitMask & VXUnitalicFontMask)
        italic = false;
    if (bold == m_bold && italic == m_italic)
        return *this;
    const std::optional<VXFontDatabase::Face> face =
        VXFontDatabase::faceInFamily(m_family, bold, italic);
    if (!face)
        return *this;
    return fromFace(*face, face->postScriptName, m_size);
}

QFont VXFont::qfont() const
{
    QFont font;
    font.setFamilies({m_family});
    font.setWeight(QFont::Weight(m_weight));
    font.setItalic(m_italic);
    // Qt refuses sizes of 0 and below; the platform reads them as its default size.
    font.setPointSizeF(m_size > 0.0 ? m_size : 12.0);
    return font;
}

bool VXFont::operator==(const VXFont &other) const
{
    return m_name == other.m_name && m_family == other.m_family && m_size == other.m_size &&
           m_weight == other.m_weight && m_italic == other.m_italic;
}
