#pragma once

#include "tests/localmapi/MailModel.h"
#include "tests/localmapi/Restrictions.h"

#include <cstdint>
#include <random>

// Made up from a seed: messages with few different values, so that they meet, and restrictions on them.
class RandomMail
{
public:
    // On every message, and told by no other value: its number, from 0.
    static constexpr ULONG numberTag = 0x66200003;

    explicit RandomMail(std::uint32_t seed) : engine(seed) {}

    // Mostly a few, sometimes more than a table reads at once. In the order of their ids, of which some are
    // left out.
    std::vector<ModelMessage> Messages();

    // Every kind of restriction there is, in one another down to `depth`; well formed. `make` keeps its
    // parts.
    SRestriction Restriction(Restrictions& make, int depth);

    // One that is refused with `result`, somewhere inside a well formed one.
    struct Refused
    {
        SRestriction restriction;
        HRESULT result;
    };
    Refused Malformed(Restrictions& make, int depth);

    bool OneIn(int count) { return Below(count) == 0; }

private:
    // Which table a restriction is on.
    enum class Table
    {
        messages,
        recipients,
        attachments
    };

    ModelMessage Message();
    ModelRow Row(Table table);
    ModelValue Value(ULONG type);
    std::u32string Text();
    ULONG Tag(Table table);
    ULONG TagLike(Table table, ULONG tag);
    SPropValue Property(Restrictions& make, ULONG tag, const ModelValue& value);

    SRestriction Condition(Restrictions& make, int depth, Table table);
    std::vector<SRestriction> Conditions(Restrictions& make, int depth, Table table);
    SRestriction Comparison(Restrictions& make, Table table);
    SRestriction Content(Restrictions& make, Table table);
    SRestriction BitMask(Restrictions& make, Table table);
    SRestriction Compound(Restrictions& make, int depth, Table table);
    SRestriction Sub(Restrictions& make, int depth);
    Refused MalformedLeaf(Restrictions& make);

    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }

    template <typename T, std::size_t count>
    const T& OneOf(const T (&choices)[count])
    {
        return choices[Below(static_cast<int>(count))];
    }

    std::mt19937 engine;
};
