#include <cmath>
#include <limits>
#include <stdexcept>

#include "appkit/Impression.h"

#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct NSPrintOperationTest : ImpressionFixture {};

TEST_F(NSPrintOperationTest, divisionOfAViewThatDoesNotKnowItsPages) {
    struct Row {
        const char* what;
        NSSize view;
        CGFloat scale;
        NSPrintingPaginationMode across, down;
        std::vector<NSRect> spared; ///< subviews, in flipped coordinates
        std::vector<NSRect> pages;
    };
    const Row rows[] = {
        {"less than a page", {200, 300}, 1, NSClipPagination, NSAutoPagination, {}, {{{0, 0}, {200, 300}}}},
        {"a page to the point", {540, 720}, 1, NSAutoPagination, NSAutoPagination, {}, {{{0, 0}, {540, 720}}}},
        {"three pages",
         {200, 1500},
         1,
         NSClipPagination,
         NSAutoPagination,
         {},
         {{{0, 0}, {200, 720}}, {{0, 720}, {200, 720}}, {{0, 1440}, {200, 60}}}},
        {"at half size",
         {200, 1500},
         0.5,
         NSClipPagination,
         NSAutoPagination,
         {},
         {{{0, 0}, {200, 1440}}, {{0, 1440}, {200, 60}}}},
        {"a subview is not cut, nor the one that this cuts",
         {200, 900},
         1,
         NSClipPagination,
         NSAutoPagination,
         {{{0, 700}, {50, 60}}, {{60, 690}, {50, 20}}},
         {{{0, 0}, {200, 690}}, {{0, 690}, {200, 210}}}},
        {"one that begins too high is",
         {200, 900},
         1,
         NSClipPagination,
         NSAutoPagination,
         {{{0, 100}, {50, 700}}},
         {{{0, 0}, {200, 720}}, {{0, 720}, {200, 180}}}},
        {"columns, row after row",
         {700, 800},
         1,
         NSAutoPagination,
         NSAutoPagination,
         {},
         {{{0, 0}, {540, 720}}, {{540, 0}, {160, 720}}, {{0, 720}, {540, 80}}, {{540, 720}, {160, 80}}}},
        {"cut", {700, 800}, 1, NSClipPagination, NSClipPagination, {}, {{{0, 0}, {540, 720}}}},
        {"made to fit across",
         {1080, 1500},
         1,
         NSFitPagination,
         NSAutoPagination,
         {},
         {{{0, 0}, {1080, 1440}}, {{0, 1440}, {1080, 60}}}},
        {"made to fit in all", {1080, 7200}, 1, NSFitPagination, NSFitPagination, {}, {{{0, 0}, {1080, 7200}}}},
        {"no size", {0, 0}, 1, NSAutoPagination, NSAutoPagination, {}, {{{0, 0}, {0, 0}}}},
    };
    for (const Row& row : rows)
        for (const BOOL flipped : {YES, NO}) {
            SCOPED_TRACE(std::string(row.what) + (flipped ? ", flipped" : ""));
            const auto view = make<Lignes>(row.view, flipped);
            const auto turned = [&](NSRect r) {
                if (!flipped) r.origin.y = row.view.height - NSMaxY(r);
                return r;
            };
            for (const NSRect& r : row.spared)
                view->addSubview(make<NSView>(turned(r)));
            info->setScalingFactor(row.scale);
            info->setHorizontalPagination(row.across);
            info->setVerticalPagination(row.down);
            const auto pdf = printed(view);
            ASSERT_NE(pdf, nullptr);
            EXPECT_EQ(nombreDePages(pdf->view()), static_cast<int>(row.pages.size()));
            ASSERT_EQ(view->parts.size(), row.pages.size());
            for (std::size_t i = 0; i < row.pages.size(); ++i)
                EXPECT_TRUE(NSEqualRects(view->parts[i], turned(row.pages[i])))
                    << NSStringFromRect(view->parts[i])->utf8();
        }
}

TEST_F(NSPrintOperationTest, eachLineStandsOnOnePageWhereItBelongs) {
    for (const BOOL flipped : {YES, NO})
        for (const CGFloat scale : {1.0, 0.5}) {
            const auto view = make<Lignes>(NSSize{300, 1500}, flipped);
            view->border = YES;
            info->setScalingFactor(scale);
            const auto pdf = printed(view);
            const auto mots = motsDuPDF(pdf->view());
            const int aPage = static_cast<int>(36 / scale);
            for (int i = 0; i < 75; ++i) {
                const std::string ligne = "ligne" + std::to_string(i);
                ASSERT_EQ(pagesDuMot(mots, ligne), std::vector<int>{i / aPage + 1}) << ligne << " at " << scale;
            }
            for (const MotPDF& m : mots)
                if (m.mot.starts_with("ligne")) {
                    const int i = std::stoi(m.mot.substr(5));
                    EXPECT_NEAR(m.x, 36 + 4 * scale, 1.5);
                    EXPECT_NEAR(m.y, 36 + (i % aPage * 20 + 2) * scale, 3);
                } else {
                    // The border is never scaled, and stands where the paper says.
                    EXPECT_EQ(m.mot, "bord" + std::to_string(m.page));
                    EXPECT_NEAR(m.x, 20, 1);
                    EXPECT_NEAR(m.y, flipped ? 10 : 15, 6);
                }
            EXPECT_FALSE(view->drewToScreen);
        }
}

TEST_F(NSPrintOperationTest, aViewThatCountsItsPagesGivesThemOrHasThemDivided) {
    const auto view = make<Lignes>(NSSize{300, 1000}, YES);
    view->border = YES;
    view->pages = [](NSRange* range) {
        *range = {1, 3};
        return YES;
    };
    view->rect = [](NSInteger page) { return page == 2 ? NSRect{{0, 400}, {300, 40}} : NSZeroRect; };
    const auto pdf = printed(view);
    const auto mots = motsDuPDF(pdf->view());
    // The first is the view's first division; the third, of which nothing is left, has its border all the same.
    EXPECT_TRUE(NSEqualRects(view->parts.at(0), {{0, 0}, {300, 720}}));
    EXPECT_EQ(pagesDuMot(mots, "ligne0"), std::vector<int>{1});
    EXPECT_EQ(pagesDuMot(mots, "ligne20"), (std::vector<int>{1, 2}));
    EXPECT_EQ(pagesDuMot(mots, "ligne40"), std::vector<int>{});
    EXPECT_EQ(pagesDuMot(mots, "bord3"), std::vector<int>{3});
    EXPECT_EQ(view->begun, 1);
    EXPECT_EQ(view->ended, 1);
}

TEST_F(NSPrintOperationTest, aPartThatIsTooLargeIsMadeSmallerAndStaysWithinTheMargins) {
    const auto view = make<Lignes>(NSSize{300, 1440}, YES);
    view->pages = [](NSRange*) { return YES; };
    view->rect = [](NSInteger) { return NSRect{{0, 0}, {300, 1440}}; };
    const auto pdf = printed(view);
    for (const MotPDF& m : motsDuPDF(pdf->view())) {
        EXPECT_GE(m.y, 30);
        EXPECT_LE(m.y + m.hauteur, 792 - 30);
    }
    EXPECT_TRUE(NSEqualPoints(view->places.at(0), {36, 36}));
}

TEST_F(NSPrintOperationTest, strangeValuesOfAPrintInfoAreIgnoredOrEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    for (const NSSize& size : {NSSize{0, 100}, NSSize{-5, 5}, NSSize{nan, 100}, NSSize{100, inf}, NSSize{1e9, 1e9}}) {
        info->setPaperSize(size);
        EXPECT_TRUE(NSEqualSizes(info->paperSize(), {612, 792}));
    }
    for (const double scale : {0.0, -1.0, nan, inf})
        info->setScalingFactor(scale);
    EXPECT_EQ(info->scalingFactor(), 1);
    info->setLeftMargin(nan);
    EXPECT_EQ(info->leftMargin(), 36);
    info->setFirstPage_lastPage(7, -3);
    EXPECT_EQ(info->firstPage(), 1);
    EXPECT_EQ(info->lastPage(), 7);
    // Margins that leave nothing: the view comes on one page, at its size.
    for (const CGFloat margin : {400.0, 5000.0, -300.0}) {
        info->setTopMargin(margin);
        info->setLeftMargin(margin);
        const auto pdf = printed(make<Lignes>(NSSize{300, 1500}, YES));
        EXPECT_GE(nombreDePages(pdf->view()), 1);
    }
}

TEST_F(NSPrintOperationTest, orientationTurnsThePaperAndADictionaryHoldsAll) {
    info->setOrientation(NSPaperOrientationLandscape);
    EXPECT_TRUE(NSEqualSizes(info->paperSize(), {792, 612}));
    info->setPaperName(u"iso_a4_210x297mm"_ns);
    EXPECT_GT(info->paperSize().width, info->paperSize().height);
    info->setCopies(3);
    info->setFirstPage_lastPage(2, 5);
    info->setPrintsAllPages(NO);
    info->setScalingFactor(0.75);
    info->setJobDisposition(u"anything else"_ns);
    const Ref<NSDictionary> d = info->dictionary();
    const auto copy = make<NSPrintInfo>(d.get());
    const Ref<NSDictionary> again = copy->dictionary();
    EXPECT_TRUE(d->isEqual(again));
    EXPECT_EQ(copy->orientation(), NSPaperOrientationLandscape);
}

TEST_F(NSPrintOperationTest, whereAJobGoes) {
    const auto view = make<Lignes>(NSSize{300, 1500}, YES);
    info->setJobDisposition(NSPrintSpoolJob.get());
    const auto nowhere = operation(view);
    EXPECT_FALSE(nowhere->runOperation());
    EXPECT_NE(nowhere->error(), nullptr);

    printing().addPrinter({"bureau", "Bureau", false, true});
    printing().addPrinter({"salle", "Grande salle", true, true});
    info->setCopies(2);
    info->setPrintsAllPages(NO);
    info->setFirstPage_lastPage(2, 9);
    const auto spooled = operation(view);
    spooled->setJobTitle(u"Liste"_ns);
    ASSERT_TRUE(spooled->runOperation());
    ASSERT_EQ(printing().jobs().size(), 1u);
    const auto& job = printing().jobs()[0];
    EXPECT_EQ(job.job.printer, "salle");
    EXPECT_EQ(job.job.title, "Liste");
    EXPECT_EQ(job.job.copies, 2);
    EXPECT_EQ(job.job.paper, "na_letter_8.5x11in");
    EXPECT_EQ(job.pages, 2);

    info->setPrinterName(u"cave"_ns);
    EXPECT_FALSE(operation(view)->runOperation());
    info->setPrinterName(u"bureau"_ns);
    info->setFirstPage_lastPage(8, 9);
    EXPECT_FALSE(operation(view)->runOperation()) << "no such pages";
    info->setPrintsAllPages(YES);
    printing().setFailure("plus de papier");
    const auto failing = operation(view);
    EXPECT_FALSE(failing->runOperation());
    ASSERT_NE(failing->error(), nullptr);
    EXPECT_EQ(failing->error()->localizedDescription()->utf8(), "plus de papier");
    EXPECT_EQ(NSPrintOperation::currentOperation(), nullptr);
    EXPECT_EQ(printing().jobs().size(), 1u);
    EXPECT_EQ(view->begun, view->ended);
}

TEST_F(NSPrintOperationTest, aFileIsReplacedAsAWholeOrNotAtAll) {
    backend::Backend::current().printing = backend::makeQtPrinting();
    const Folder dossier;
    dossier.write("liste.pdf", "ancien");
    info->setJobSavingURL(NSURL::fileURLWithPath(dossier.at("liste.pdf")));
    const auto view = make<Lignes>(NSSize{300, 3000}, YES);

    const auto cancelled = operation(view);
    view->onPage = [&] {
        if (view->parts.size() == 3) cancelled->cancel();
    };
    EXPECT_FALSE(cancelled->runOperation());
    EXPECT_TRUE(cancelled->isCancelled());
    EXPECT_EQ(view->parts.size(), 3u);
    EXPECT_EQ(dossier.read("liste.pdf"), "ancien");
    EXPECT_EQ(dossier.names().size(), 1u);

    view->onPage = [] { throw std::runtime_error("in the middle of a page"); };
    const auto broken = operation(view);
    EXPECT_THROW(broken->runOperation(), std::runtime_error);
    EXPECT_EQ(dossier.read("liste.pdf"), "ancien");
    EXPECT_EQ(dossier.names().size(), 1u);
    EXPECT_EQ(NSPrintOperation::currentOperation(), nullptr);
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);

    view->onPage = nullptr;
    EXPECT_TRUE(operation(view)->runOperation());
    EXPECT_EQ(nombreDePages(dossier.read("liste.pdf")), 5);
    EXPECT_EQ(dossier.names().size(), 1u);

    info->setJobSavingURL(NSURL::fileURLWithPath(dossier.at("absent/a.pdf")));
    const auto nowhere = operation(view);
    EXPECT_FALSE(nowhere->runOperation());
    EXPECT_NE(nowhere->error(), nullptr);
}

TEST_F(NSPrintOperationTest, aLongJobShowsHowFarItIsAndIsCancelledByEscape) {
    const auto view = make<Lignes>(NSSize{300, 720 * 30}, YES);
    std::string shown;
    const auto states = [](NSWindow* w) {
        std::string all;
        for (NSView* v : w->contentView()->subviews())
            if (const auto* field = as<NSTextField>(v)) all += field->stringValue()->utf8() + "|";
        return all;
    };
    view->onPage = [&] {
        if (view->parts.size() != 5) return;
        NSWindow* panel = NSApp()->modalWindow();
        ASSERT_NE(panel, nullptr);
        shown = states(panel);
        windows().key(0x1B);
    };
    const auto job = operation(view);
    job->setJobTitle(u"Longue liste"_ns);
    EXPECT_FALSE(job->runOperation());
    EXPECT_TRUE(job->isCancelled());
    EXPECT_NE(shown.find("Longue liste"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Page 5 sur 30"), std::string::npos) << shown;
    EXPECT_LE(view->parts.size(), 8u) << "the key is seen at the end of a slice";
    EXPECT_EQ(printing().abandoned(), 1);
    EXPECT_EQ(NSApp()->modalWindow(), nullptr);

    view->parts.clear();
    view->onPage = nullptr;
    EXPECT_TRUE(operation(view)->runOperation());
    EXPECT_EQ(view->parts.size(), 30u);

    view->onPage = [&] {
        if (view->parts.size() == 45) throw std::runtime_error("in the middle of a long job");
    };
    EXPECT_THROW(operation(view)->runOperation(), std::runtime_error);
    EXPECT_EQ(NSApp()->modalWindow(), nullptr);
}

TEST_F(NSPrintOperationTest, aCopyIsThatPartAlone) {
    for (const CGFloat scrolled : {0.0, 40.0}) {
        const auto view = make<Lignes>(NSSize{300, 200}, YES);
        view->border = YES;
        view->setBoundsOrigin({0, scrolled});
        const auto copy = NSPrintOperation::PDFOperationWithView_insideRect(view, {{0, 40}, {150, 60}});
        ASSERT_TRUE(copy->runOperation());
        const Ref<NSData> data = copy->data();
        const auto mots = motsDuPDF(data->view());
        ASSERT_EQ(mots.size(), 3u);
        EXPECT_EQ(mots[0].mot, "ligne2");
        EXPECT_NEAR(mots[0].x, 4, 1.5);
        EXPECT_NEAR(mots[0].y, 2, 3);
    }
}

} // namespace
