#pragma once

#include <gtest/gtest.h>

#include <string>

namespace tarnwell::tests {

/// Names the tests of a table after the field `name` of its rows.
struct RowName
{
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row> &row) const
    {
        return row.param.name;
    }
};

} // namespace tarnwell::tests
