#include <set>
#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/foundation/NSString.h>

using namespace libvue;

namespace {

/// Watches what each test leaves alive. Tables that are made on first use stay, so a test that leaves objects gets a
/// second run: only what it leaves again is a leak. A release build has nothing to watch.
class LeakListener : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override { markLiveObjectsAsExpected(); }

    void OnTestEnd(const testing::TestInfo& test) override {
        const std::string left = liveObjectsReport()->utf8();
        if (left.empty()) return;
        const std::string name = std::string(test.test_suite_name()) + "." + test.name();
        if (!secondRun_)
            suspects_.insert(name);
        else
            ADD_FAILURE() << name << " leaks:\n" << left;
    }

    /// The suspects as a filter; empty where there are none.
    std::string beginSecondRun() {
        secondRun_ = true;
        std::string filter;
        for (const std::string& name : suspects_)
            filter += (filter.empty() ? "" : ":") + name;
        return filter;
    }

private:
    std::set<std::string> suspects_;
    bool secondRun_ = false;
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    auto* listener = new LeakListener;
    testing::UnitTest::GetInstance()->listeners().Append(listener);
    int status = RUN_ALL_TESTS();
    const std::string filter = listener->beginSecondRun();
    if (status == 0 && !filter.empty()) {
        GTEST_FLAG_SET(filter, filter);
        status = RUN_ALL_TESTS();
    }
    return status;
}
