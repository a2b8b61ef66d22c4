#pragma once

#include <functional>
#include <string>
#include <vector>

#include "appkit/AppFixture.h"
#include <support/Folder.h>
#include <support/TextePDF.h>

#include <libvue/platform/appkit/NSPrintInfo.h>
#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/backend/memory/MemoryPrintService.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue::test {

/// Lines of text one above the other, each with its number, and what the operation asks.
class Lignes : public NSView {
public:
    static void describe(ClassDescription<Lignes, NSView>&) {}
    Lignes(NSSize size, BOOL flipped) : NSView({{0, 0}, size}), flipped_(flipped) {}

    std::function<void()> onPage;
    std::function<BOOL(NSRange*)> pages;
    std::function<NSRect(NSInteger)> rect;
    BOOL border = NO;
    BOOL drewToScreen = NO;
    std::vector<NSRect> parts;
    std::vector<NSPoint> places;
    int begun = 0, ended = 0;

    [[nodiscard]] BOOL isFlipped() const override { return flipped_; }
    BOOL knowsPageRange(NSRange* range) override { return pages && pages(range); }
    NSRect rectForPage(NSInteger page) override { return rect ? rect(page) : NSZeroRect; }
    void beginDocument() override { ++begun; }
    void endDocument() override { ++ended; }
    void beginPageInRect_atPlacement(const NSRect& r, NSPoint place) override {
        parts.push_back(r);
        places.push_back(place);
    }
    void drawRect(const NSRect& r) override {
        if (onPage) onPage();
        drewToScreen = drewToScreen || NSGraphicsContext::currentContextDrawingToScreen();
        for (int i = 0; i * 20 < bounds().size.height; ++i) {
            const CGFloat y = flipped_ ? i * 20 + 2 : bounds().size.height - i * 20 - 18;
            const NSRect line{{4, y}, {100, 15}};
            if (NSIntersectsRect(line, r))
                drawAtPoint_withAttributes(NSString::stringWithFormat(u"ligne%d"_ns, i), line.origin, nullptr);
        }
    }
    void drawPageBorderWithSize(const NSSize& paper) override {
        if (!border) return;
        lockFocus();
        const auto number = NSPrintOperation::currentOperation()->currentPage();
        drawAtPoint_withAttributes(NSString::stringWithFormat(u"bord%ld"_ns, static_cast<long>(number)),
                                   {20, flipped_ ? 10 : paper.height - 30}, nullptr);
        unlockFocus();
    }

private:
    BOOL flipped_;
};

/// Prints in memory, on letter paper with margins of 36 points: 540 by 720 are left.
struct ImpressionFixture : AppFixture {
    Ref<NSPrintInfo> info = make<NSPrintInfo>();

    ImpressionFixture() {
        info->setPaperSize({612, 792});
        for (const auto set : {&NSPrintInfo::setLeftMargin, &NSPrintInfo::setRightMargin, &NSPrintInfo::setTopMargin,
                               &NSPrintInfo::setBottomMargin})
            (info.get()->*set)(36);
        info->setHorizontallyCentered(NO);
        info->setVerticallyCentered(NO);
        info->setJobDisposition(NSPrintSaveJob.get());
    }
    ~ImpressionFixture() override { NSPrintInfo::setSharedPrintInfo(nullptr); }

    [[nodiscard]] static backend::MemoryPrintService& printing() {
        return dynamic_cast<backend::MemoryPrintService&>(*backend::Backend::current().printing);
    }
    [[nodiscard]] Ref<NSPrintOperation> operation(NSView* view) const {
        auto o = NSPrintOperation::printOperationWithView_printInfo(view, info);
        o->setShowsPrintPanel(NO);
        return o;
    }
    /// A job without panel that stays in memory.
    [[nodiscard]] Ref<NSData> printed(NSView* view) const {
        const auto o = operation(view);
        EXPECT_TRUE(o->runOperation());
        return o->data();
    }
};

} // namespace libvue::test
