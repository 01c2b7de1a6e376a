#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QByteArray>
#include <QList>

#include <optional>

// A path of indexes into a tree of items: the first index picks a top-level item, each
// following one a child of the item before.
class VXIndexPath
{
public:
    VXIndexPath() = default;
    explicit VXIndexPath(QList<quint64> indexes) : m_indexes(std::move(indexes)) {}
    static VXIndexPath indexPathWithIndex(quint64 index) { return VXIndexPath({index}); }

    qsizetype length() const { return m_indexes.size(); }
    quint64 indexAtPosition(qsizetype position) const { return m_indexes.at(position); }
    VXIndexPath indexPathByAddingIndex(quint64 index) const
    {
        VXIndexPath path = *this;
        path.m_indexes.append(index);
        return path;
    }
    const QList<quint64> &indexes() const { return m_indexes; }

    bool operator==(const VXIndexPath &other) const = default;

private:
    QList<quint64> m_indexes;
};

// Serialisation of index paths to bytes and back. The encoding is our own and stable:
//   4 bytes  "VXIP"
//   1 byte   format version, 1
//   4 bytes  number of indexes n, unsigned big-endian
//   n × 8    the indexes in path order, unsigned big-endian
// Anything else (another magic or version, a count that does not match the length,
// trailing bytes) is unreadable.
namespace VXIndexPathPropertyListSerialization {
QV_FOUNDATION_EXPORT QByteArray propertyListRepresentation(const VXIndexPath &indexPath);
// std::nullopt for unreadable data.
QV_FOUNDATION_EXPORT std::optional<VXIndexPath>
indexPathFromPropertyListRepresentation(const QByteArray &data);
} // namespace VXIndexPathPropertyListSerialization
