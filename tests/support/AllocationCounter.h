#pragma once
#include <cstddef>

// Counts heap allocations made by the process while a scope is armed, so tests can prove that the
// audio path allocates nothing. Linking zonfra_test_support replaces the global allocation
// functions of the test program.
namespace TestSupport {

std::size_t allocationCount();

class AllocationScope {
public:
    AllocationScope() : start(allocationCount()) {}
    std::size_t allocations() const { return allocationCount() - start; }

private:
    std::size_t start;
};

}  // namespace TestSupport
