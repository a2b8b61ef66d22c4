#include <libvue/platform/appkit/CGSWindowTags.h>

#include <algorithm>

#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

namespace {

constexpr CGSConnectionID kConnection = 1;
constexpr int kBitsPerWord = 64, kBits = 2 * kBitsPerWord;

/// The bits of one word that a width counts in.
std::uint64_t wordMask(int bits) noexcept {
    return bits >= kBitsPerWord ? ~std::uint64_t{0} : (std::uint64_t{1} << std::max(bits, 0)) - 1;
}

/// The window that is meant, or what is wrong with the question.
CGError find(NSWindow*& window, CGSConnectionID connection, NSInteger number, const std::uint64_t* tags, int bits) {
    if (connection != kConnection) return kCGErrorInvalidConnection;
    if (!tags || bits < 1 || bits > kBits) return kCGErrorIllegalArgument;
    window = NSWindow::windowWithNumber(number);
    return window ? kCGErrorSuccess : kCGErrorIllegalArgument;
}

} // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): its name since ever.
CGSConnectionID _CGSDefaultConnection() noexcept { return kConnection; }

CGError CGSGetWindowTags(CGSConnectionID connection, NSInteger windowNumber, std::uint64_t* tags, int bits) {
    NSWindow* window = nullptr;
    if (const CGError error = find(window, connection, windowNumber, tags, bits)) return error;
    const CGSWindowTags kept{window->isOnAllDesktops() ? kCGSTagSticky : 0, 0};
    for (int word = 0; word < 2; ++word) {
        const std::uint64_t mask = wordMask(bits - word * kBitsPerWord);
        tags[word] = (tags[word] & ~mask) | (kept[static_cast<std::size_t>(word)] & mask);
    }
    return kCGErrorSuccess;
}

CGError CGSSetWindowTags(CGSConnectionID connection, NSInteger windowNumber, const std::uint64_t* tags, int bits) {
    NSWindow* window = nullptr;
    if (const CGError error = find(window, connection, windowNumber, tags, bits)) return error;
    if (wordMask(bits) & kCGSTagSticky) window->setAllDesktops((tags[0] & kCGSTagSticky) != 0);
    return kCGErrorSuccess;
}

} // namespace libvue
