#pragma once

#include "compositions/model/Value.h"

#include <QStringList>

#include <vector>

namespace tarnwell::compositions {

/// An ordered collection of values, with a name each unless it is a plain list. The keys of a list
/// are its indices. It never changes, and its size and depth are bounded: members that would go
/// beyond are left out.
class Structure
{
public:
    /// So many characters of a text weigh as much as a member.
    static constexpr int charactersPerMember = 64;
    /// What a value counts for in a structure: its members and theirs, and its characters.
    static qint64 weightOf(const Value &value);

    static StructureRef list(std::vector<Value> members);
    /// As many keys as members; of equal keys the first counts when looked up.
    static StructureRef keyed(QStringList keys, std::vector<Value> members);

    qsizetype count() const { return qsizetype(m_members.size()); }
    bool isList() const { return m_keys.isEmpty(); }
    const std::vector<Value> &members() const { return m_members; }
    QString key(qsizetype index) const;
    /// No value beyond the ends.
    Value member(qint64 index) const;
    /// No value when there is no such key.
    Value member(const QString &key) const;

    int depth() const { return m_depth; }

private:
    struct Token
    {};

public:
    Structure(Token, QStringList keys, std::vector<Value> members);

private:
    QStringList m_keys;
    std::vector<Value> m_members;
    qint64 m_weight = 0;
    int m_depth = 1;
};

} // namespace tarnwell::compositions
