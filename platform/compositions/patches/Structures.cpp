#include "compositions/evaluator/Context.h"
#include "compositions/model/Structure.h"
#include "compositions/patches/Edge.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <algorithm>
#include <array>
#include <bit>
#include <deque>
#include <numeric>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

/// So many keys are looked at in a run of a simple patch.
constexpr qint64 keysPerRun = 64;

/// The members at these places, with their keys if they have any.
StructureRef picked(const Structure &from, const std::vector<size_t> &places)
{
    std::vector<Value> members;
    QStringList keys;
    for (const size_t place : places) {
        members.push_back(from.members()[place]);
        if (!from.isList()) {
            keys.append(from.key(qsizetype(place)));
        }
    }
    return from.isList() ? Structure::list(std::move(members))
                         : Structure::keyed(std::move(keys), std::move(members));
}

std::vector<size_t> allPlaces(const Structure &structure)
{
    std::vector<size_t> places(size_t(structure.count()));
    std::iota(places.begin(), places.end(), 0);
    return places;
}

void addMemberPorts(const NodeDescription &description, PortList &ports)
{
    if (description.identifier == "key"_L1) {
        ports.addInput(u"inputKey"_s, Type::String);
    } else {
        ports.addInput(u"inputIndex"_s, Type::Index);
    }
    ports.addOutput(description.identifier == "keyAtIndex"_L1 ? u"outputKey"_s : u"outputMember"_s,
                    Type::Virtual);
}

void member(Context &context)
{
    const StructureRef structure = context.structure(0);
    if (!structure) {
        context.set(0, {});
    } else if (context.description().identifier == "key"_L1) {
        if (context.charge(structure->count() / keysPerRun)) {
            context.set(0, structure->member(context.string(1)));
        }
    } else if (context.description().identifier == "keyAtIndex"_L1) {
        const qint64 index = context.index(1);
        context.set(0, index < structure->count() ? Value(structure->key(index)) : Value());
    } else {
        context.set(0, structure->member(context.index(1)));
    }
}

void count(Context &context)
{
    const StructureRef structure = context.structure(0);
    context.set(0, Value::index(structure ? structure->count() : 0));
}

/// Numbers before texts, each in their own order; a member that is a structure is ranked by one of
/// its own members.
bool isBefore(const Value &a, const Value &b)
{
    if (a.isNumeric() && b.isNumeric()) {
        return a.toNumber() < b.toNumber();
    }
    if (a.isNumeric() != b.isNumeric()) {
        return a.isNumeric();
    }
    return QString::compare(a.toString(), b.toString(), Qt::CaseInsensitive) < 0;
}

void sort(Context &context)
{
    const StructureRef structure = context.structure(0);
    if (!structure) {
        context.set(0, {});
        return;
    }
    const QString key = context.string(1);
    std::vector<Value> ranks;
    qint64 work = 0;
    for (const Value &value : structure->members()) {
        const StructureRef inner = value.toStructure();
        const Value rank = inner && !key.isEmpty() ? inner->member(key) : value;
        ranks.push_back(rank.isNumeric() ? rank : Value(rank.toString()));
        work += Structure::weightOf(ranks.back()) + (inner ? inner->count() / keysPerRun : 0);
    }
    // Every member is compared with about as many as their number has digits.
    if (!context.charge(work * qint64(std::bit_width(ranks.size())))) {
        return;
    }
    std::vector<size_t> places = allPlaces(*structure);
    std::ranges::stable_sort(places,
                             [&ranks](size_t a, size_t b) { return isBefore(ranks[a], ranks[b]); });
    context.set(0, picked(*structure, places));
}

void reverse(Context &context)
{
    const StructureRef structure = context.structure(0);
    if (!structure) {
        context.set(0, {});
        return;
    }
    std::vector<size_t> places = allPlaces(*structure);
    std::ranges::reverse(places);
    context.set(0, picked(*structure, places));
}

void range(Context &context)
{
    const StructureRef structure = context.structure(0);
    if (!structure) {
        context.set(0, {});
        return;
    }
    const qint64 first = std::min<qint64>(context.index(1), structure->count());
    const qint64 length = std::min<qint64>(context.index(2), structure->count() - first);
    std::vector<size_t> places(size_t(length), 0);
    std::iota(places.begin(), places.end(), size_t(first));
    context.set(0, picked(*structure, places));
}

/// Remembers the last values that it saw, the newest last. Inside an iterator every pass counts as
/// a value of its own.
class Queue : public Patch
{
public:
    explicit Queue(const NodeDescription &description)
        : m_isContinuous(flagSetting(description, "continuous"_L1))
    {}

    void run(Context &context) override
    {
        const qint64 size = std::min(context.index(1), limits::structureMembers);
        const size_t before = m_values.size();
        bool hasChanged = false;
        if (m_reset.rises(context.boolean(3))) {
            m_values.clear();
            m_weight = 0;
            m_hasLast = false;
            hasChanged = true;
        }
        const Value &value = context.value(0);
        if (context.boolean(2) &&
            (m_isContinuous || !m_hasLast || context.pass().count > 0 || !(value == m_last))) {
            m_weight += Structure::weightOf(value);
            m_values.push_back(value);
            m_last = value;
            m_hasLast = true;
            hasChanged = true;
        }
        // The newest ones are kept, also where they are too large to be all remembered.
        while (qint64(m_values.size()) > size || m_weight > limits::structureMembers) {
            m_weight -= Structure::weightOf(m_values.front());
            m_values.pop_front();
        }
        if (hasChanged || m_values.size() != before || context.isFirstRun()) {
            context.set(0, Structure::list({m_values.begin(), m_values.end()}));
        }
    }

private:
    bool m_isContinuous;
    bool m_hasLast = false;
    Edge m_reset;
    Value m_last;
    std::deque<Value> m_values;
    qint64 m_weight = 0;
};

constexpr std::array structureInput{PortDefinition{"inputStructure"_L1, Type::Structure}};
constexpr std::array structureOutput{PortDefinition{"outputStructure"_L1, Type::Structure}};
constexpr std::array countOutput{PortDefinition{"outputCount"_L1, Type::Index}};
constexpr std::array sortInputs{PortDefinition{"inputStructure"_L1, Type::Structure},
                                PortDefinition{"inputSortingKey"_L1, Type::String}};
constexpr std::array rangeInputs{PortDefinition{"inputStructure"_L1, Type::Structure},
                                 PortDefinition{"inputIndex"_L1, Type::Index},
                                 PortDefinition{"inputLength"_L1, Type::Index, 1.0}};
constexpr std::array queueInputs{PortDefinition{"inputValue"_L1, Type::Virtual},
                                 PortDefinition{"inputSize"_L1, Type::Index, 10.0},
                                 PortDefinition{"inputFilling"_L1, Type::Boolean, 1.0},
                                 PortDefinition{"inputResetSignal"_L1, Type::Boolean}};
constexpr std::array queueOutput{PortDefinition{"outputQueue"_L1, Type::Structure}};

const std::array definitions{
    PatchDefinition{.className = "QCStructureMember"_L1,
                    .inputs = structureInput,
                    .run = member,
                    .addPorts = addMemberPorts},
    PatchDefinition{.className = "QCStructureCount"_L1,
                    .inputs = structureInput,
                    .outputs = countOutput,
                    .run = count},
    PatchDefinition{.className = "QCStructureSort"_L1,
                    .inputs = sortInputs,
                    .outputs = structureOutput,
                    .run = sort},
    PatchDefinition{.className = "QCStructureReverse"_L1,
                    .inputs = structureInput,
                    .outputs = structureOutput,
                    .run = reverse},
    PatchDefinition{.className = "QCStructureRange"_L1,
                    .inputs = rangeInputs,
                    .outputs = structureOutput,
                    .run = range},
    PatchDefinition{.className = "QCQueue"_L1,
                    .inputs = queueInputs,
                    .outputs = queueOutput,
                    .traits = Trait::Stateful,
                    .make = makePatch<Queue>},
};

} // namespace

std::span<const PatchDefinition> structurePatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
