// The order of fields and of virtual operations, against the compiler's own layout: both are part of the binary
// interface.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "brindle/expressions/solver.h"

using Literal = CCalculator::Literal;

struct brindle::LayoutProbe {
    static std::vector<std::ptrdiff_t> LiteralOffsets(const Literal& literal) {
        const auto offset = [&literal](const void* field) {
            return static_cast<const char*>(field) - reinterpret_cast<const char*>(&literal);
        };
        return {offset(&literal.m_string),     offset(&literal.m_bool), offset(&literal.m_int),
                offset(&literal.m_double),     offset(&literal.m_date), offset(&literal.m_type),
                offset(&literal.m_replaceable)};
    }
};

namespace {

template <class Function>
std::ptrdiff_t Slot(Function function) {
    std::ptrdiff_t words[2] = {};
    static_assert(sizeof(function) == sizeof(words));
    std::memcpy(words, &function, sizeof(words));
    return (words[0] - 1) /
           static_cast<std::ptrdiff_t>(sizeof(void*));  // a virtual one holds its offset plus 1
}

TEST(CalculatorLayout, LiteralFieldsInOrder) {
    const Literal literal;
    const std::vector<std::ptrdiff_t> offsets = brindle::LayoutProbe::LiteralOffsets(literal);
    for (std::size_t i = 1; i < offsets.size(); ++i) EXPECT_LT(offsets[i - 1], offsets[i]) << "field " << i;
}

TEST(CalculatorLayout, VirtualOperationsInOrder) {
    // The destructor takes slots 0 and 1.
    EXPECT_EQ(Slot(&CCalculator::Token::GetTType), 2);
    EXPECT_EQ(Slot(&CCalculator::Token::AsString), 3);
    EXPECT_EQ(Slot(&CSolverData::Lookup), 2);
}

TEST(CalculatorLayout, ValueFieldsInOrder) {
    const CSolver::Value value{1, "header", "value", true};  // in the order of declaration
    EXPECT_EQ(value.address, 1u);
    EXPECT_STREQ(value.header, "header");
    EXPECT_STREQ(value.value, "value");
    EXPECT_TRUE(value.useAddress);
    EXPECT_LT(offsetof(CSolver::Value, address), offsetof(CSolver::Value, header));
    EXPECT_LT(offsetof(CSolver::Value, header), offsetof(CSolver::Value, value));
    EXPECT_LT(offsetof(CSolver::Value, value), offsetof(CSolver::Value, useAddress));
}

TEST(CalculatorLayout, SolverHasNoFields) {
    EXPECT_EQ(sizeof(CSolver), sizeof(void*));
}

}  // namespace
