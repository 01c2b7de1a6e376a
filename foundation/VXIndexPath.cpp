#include "VXIndexPath.h"

#include <QtEndian>

namespace {
constexpr char kMagic[4] = {'V', 'X', 'I', 'P'};
constexpr quint8 kVersion = 1;
constexpr qsizetype kHeaderSize = sizeof kMagic + 1 + 4;
} // namespace

namespace VXIndexPathPropertyListSerialization {

QByteArray propertyListRepresentation(const VXIndexPath &indexPath)
{
    const QList<quint64> &indexes = indexPath.indexes();
    QByteArray data(kHeaderSize + indexes.size() * 8, Qt::Uninitialized);
    char *out = data.data();
    std::copy(std::begin(kMagic), std::end(kMagic), out);
    out[sizeof kMagic] = char(kVersion);
    qToBigEndian(quint32(indexes.size()), out + sizeof kMagic + 1);
    out += kHeaderSize;
    for (const quint64 index : indexes) {
        qToBigEndian(index, out);
        out += 8;
    }
    return data;
}

std::optional<VXIndexPath> indexPathFromPropertyListRepresentation(const QByteArray &data)
{
    if (data.size() < kHeaderSize || !data.startsWith(QByteArrayView(kMagic, sizeof kMagic)) ||
        quint8(data.at(sizeof kMagic)) != kVersion)
        return std::nullopt;
    const char *in = data.constData();
    const quint64 count = qFromBigEndian<quint32>(in + sizeof kMagic + 1);
    // Checked before anything is allocated, so a forged count cannot ask for memory.
    if (quint64(data.size() - kHeaderSize) != count * 8)
        return std::nullopt;
    QList<quint64> indexes;
    indexes.reserve(qsizetype(count));
    in += kHeaderSize;
    for (quint64 i = 0; i < count; ++i, in += 8)
        indexes.append(qFromBigEndian<quint64>(in));
    return VXIndexPath(std::move(indexes));
}

} // namespace VXIndexPathPropertyListSerialization
