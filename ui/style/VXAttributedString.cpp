#include "VXAttributedString.h"

// FIRST COMMIT STUB: the run storage, drawing and measuring follow in the next commits.

VXAttributedString::VXAttributedString(const QString &string, const VXAttributes &attributes)
    : m_string(string)
{
    if (!string.isEmpty())
        m_runs.append({string.size(), attributes});
}

VXAttributes VXAttributedString::attributesAtIndex(std::uint64_t, VXRange *) const
{
    return {};
}

QVariant VXAttributedString::attributeAtIndex(const QString &, std::uint64_t, VXRange *) const
{
    return {};
}

void VXAttributedString::addAttribute(const QString &, const QVariant &, VXRange) {}
void VXAttributedString::addAttributes(const VXAttributes &, VXRange) {}
void VXAttributedString::setAttributes(const VXAttributes &, VXRange) {}
void VXAttributedString::removeAttribute(const QString &, VXRange) {}
void VXAttributedString::replaceCharactersInRange(VXRange, const QString &) {}
void VXAttributedString::replaceCharactersInRange(VXRange, const VXAttributedString &) {}
void VXAttributedString::deleteCharactersInRange(VXRange) {}
void VXAttributedString::appendAttributedString(const VXAttributedString &) {}

VXAttributedString VXAttributedString::attributedSubstringFromRange(VXRange) const
{
    return {};
}

void VXAttributedString::drawInRect(QPainter &, const QRectF &) const {}

QRectF VXAttributedString::boundingRectWithSize(QSizeF, std::uint64_t) const
{
    return {};
}

bool VXAttributedString::operator==(const VXAttributedString &other) const
{
    return m_string == other.m_string && m_runs == other.m_runs;
}

VXFont VXAttributedString::defaultFont()
{
    return VXFont::systemFontOfSize(12.0);
}

void VXAttributedString::normalize() {}

qsizetype VXAttributedString::splitAt(qsizetype)
{
    return 0;
}
