#include <libvue/platform/backend/WindowStacking.h>

#include <vector>

#include <gtest/gtest.h>

using libvue::backend::WindowId;
using libvue::backend::WindowStacking;

namespace {

using Order = std::vector<WindowId>;

WindowStacking stackOf(int count) {
    WindowStacking stack;
    for (int i = 1; i <= count; ++i)
        stack.add(static_cast<WindowId>(i));
    return stack;
}

TEST(WindowStackingTest, ordersWithinALevel) {
    struct Row {
        const char* what;
        WindowId window, above;
        Order expected;
    };
    const Row rows[] = {
        {"above the one behind it", 4, 1, {1, 4, 2, 3}},
        {"above the one in front of it", 1, 3, {2, 3, 1, 4}},
        {"above the front one", 2, 4, {1, 3, 4, 2}},
        {"to the back", 3, 0, {3, 1, 2, 4}},
        {"above itself", 2, 2, {1, 2, 3, 4}},
        {"above an unknown one", 2, 9, {1, 2, 3, 4}},
        {"an unknown one", 9, 2, {1, 2, 3, 4}},
    };
    for (const Row& row : rows) {
        WindowStacking stack = stackOf(4);
        stack.order(row.window, row.above);
        EXPECT_EQ(stack.backToFront(), row.expected) << row.what;
    }
}

TEST(WindowStackingTest, aLevelIsNeverCrossed) {
    WindowStacking stack = stackOf(4);
    stack.setLevel(2, 3);
    stack.setLevel(1, -1);
    EXPECT_EQ(stack.backToFront(), (Order{1, 3, 4, 2}));
    stack.raise(3);
    EXPECT_EQ(stack.backToFront(), (Order{1, 4, 3, 2}));
    stack.order(3, 2);
    EXPECT_EQ(stack.backToFront(), (Order{1, 4, 3, 2}));
    stack.order(2, 4);
    EXPECT_EQ(stack.backToFront(), (Order{1, 4, 3, 2}));
    stack.order(4, 0);
    stack.order(3, 0);
    EXPECT_EQ(stack.backToFront(), (Order{1, 3, 4, 2}));
    stack.add(5);
    EXPECT_EQ(stack.backToFront(), (Order{1, 3, 4, 5, 2}));
    stack.setLevel(2, 0);
    EXPECT_EQ(stack.backToFront(), (Order{1, 3, 4, 5, 2}));
}

TEST(WindowStackingTest, childrenComeAlong) {
    WindowStacking stack = stackOf(5);
    stack.setParent(3, 1);
    stack.setParent(2, 3);
    EXPECT_EQ(stack.backToFront(), (Order{1, 3, 2, 4, 5})) << "a child lies above its parent";
    stack.raise(1);
    EXPECT_EQ(stack.backToFront(), (Order{4, 5, 1, 3, 2}));
    stack.setParent(1, 2);
    EXPECT_EQ(stack.parent(1), 0u) << "no window belongs to one that belongs to it";
    stack.remove(3);
    EXPECT_EQ(stack.parent(2), 0u);
    stack.raise(1);
    EXPECT_EQ(stack.backToFront(), (Order{4, 5, 2, 1}));
}

} // namespace
