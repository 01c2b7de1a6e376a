#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QByteArray>
#include <QList>

#include <optional>

/**
 * A path of indexes into a tree of items: the first index picks a top-level item, each
 * following one a child of the item before.
 */
class VXIndexPath
{
public:
    /** The empty path (length 0). */
    VXIndexPath() = default;
    /** The path through the given indexes, top level first. */
    explicit VXIndexPath(QList<quint64> indexes) : m_indexes(std::move(indexes)) {}
    /** A path of one index: a top-level item. */
    static VXIndexPath indexPathWithIndex(quint64 index) { return VXIndexPath({index}); }

    /** The number of indexes. */
    qsizetype length() const { return m_indexes.size(); }
    /** The index at the position (0: top level); the position must be below length(). */
    quint64 indexAtPosition(qsizetype position) const { return m_indexes.at(position); }
    /** A longer path: this one followed by one more index (a child of the item here). */
    VXIndexPath indexPathByAddingIndex(quint64 index) const
    {
        VXIndexPath path = *this;
        path.m_indexes.append(index);
        return path;
    }
    /** All indexes, top level first. */
    const QList<quint64> &indexes() const { return m_indexes; }

    /** Same indexes in the same order. */
    bool operator==(const VXIndexPath &other) const = default;

private:
    QList<quint64> m_indexes;
};

/**
 * Serialisation of index paths to bytes and back. The encoding is our own and stable:
 * - 4 bytes: "VXIP";
 * - 1 byte: format version, 1;
 * - 4 bytes: number of indexes n, unsigned big-endian;
 * - n × 8 bytes: the indexes in path order, unsigned big-endian.
 *
 * Anything else (another magic or version, a count that does not match the length,
 * trailing bytes) is unreadable.
 */
namespace VXIndexPathPropertyListSerialization {
/** The index path as bytes in the encoding above, for storing it in a property list. */
QV_FOUNDATION_EXPORT QByteArray propertyListRepresentation(const VXIndexPath &indexPath);

/** The index path stored by propertyListRepresentation(); std::nullopt for unreadable data. */

QV_FOUNDATION_EXPORT std::optional<VXIndexPath>
indexPathFromPropertyListRepresentation(const QByteArray &data);
} // namespace VXIndexPathPropertyListSerialization
