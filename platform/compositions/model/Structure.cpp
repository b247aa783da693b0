#include "compositions/model/Structure.h"

#include "compositions/Limits.h"

#include <algorithm>

namespace tarnwell::compositions {

Structure::Structure(Token, QStringList keys, std::vector<Value> members)
    : m_keys(std::move(keys))
    , m_members(std::move(members))
{
    size_t kept = 0;
    for (Value &member : m_members) {
        if (const StructureRef inner = member.toStructure()) {
            if (inner->m_depth >= limits::structureDepth) {
                member = Value();
            } else {
                m_depth = std::max(m_depth, inner->m_depth + 1);
            }
        }
        const qint64 weight = weightOf(member);
        if (m_weight + weight > limits::structureMembers) {
            break;
        }
        m_weight += weight;
        ++kept;
    }
    m_members.resize(kept);
    if (!m_keys.isEmpty()) {
        m_keys.resize(qsizetype(kept));
    }
}

qint64 Structure::weightOf(const Value &value)
{
    switch (value.type()) {
    case PortType::String:
        return 1 + value.toString().size() / charactersPerMember;
    case PortType::Structure:
        return 1 + value.toStructure()->m_weight;
    default:
        return 1;
    }
}

StructureRef Structure::list(std::vector<Value> members)
{
    return std::make_shared<const Structure>(Token{}, QStringList(), std::move(members));
}

StructureRef Structure::keyed(QStringList keys, std::vector<Value> members)
{
    Q_ASSERT(keys.size() == qsizetype(members.size()));
    return std::make_shared<const Structure>(Token{}, std::move(keys), std::move(members));
}

QString Structure::key(qsizetype index) const
{
    return isList() ? QString::number(index) : m_keys.value(index);
}

Value Structure::member(qint64 index) const
{
    return index >= 0 && index < count() ? m_members[size_t(index)] : Value();
}

Value Structure::member(const QString &key) const
{
    if (isList()) {
        bool isNumber = false;
        const qlonglong index = key.toLongLong(&isNumber);
        return isNumber ? member(qint64(index)) : Value();
    }
    return member(qint64(m_keys.indexOf(key)));
}

} // namespace tarnwell::compositions
