#include <stdexcept>

#include "appkit/Impression.h"

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSPrintPanel.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// The panel of a job, used from within.
struct NSPrintPanelTest : ImpressionFixture {
    Ref<Lignes> view = make<Lignes>(NSSize{300, 1500}, YES);
    NSUInteger options = NSPrintPanelShowsCopies | NSPrintPanelShowsPageRange | NSPrintPanelShowsPaperSize |
                         NSPrintPanelShowsOrientation | NSPrintPanelShowsScaling | NSPrintPanelShowsPreview;
    int steps = 0;

    /// Runs the panel; `use` is called once it is up. What it leaves open is cancelled.
    NSInteger panel(NSPrintOperation* operation, const std::function<void(NSWindow*)>& use) {
        NSPrintOperation::setCurrentOperation(operation);
        NSPrintPanel* p = operation->printPanel();
        p->setOptions(options);
        const auto timer = NSTimer::timerWithTimeInterval_repeats_block(0, NO, [&](NSTimer*) {
            ++steps;
            const Ref<NSWindow> window(p->window_());
            ASSERT_NE(window, nullptr);
            use(window);
            drain();
            if (p->window_() && p->window_()->isVisible() && NSApp()->modalWindow() == window) windows().key(0x1B);
        });
        NSRunLoop::mainRunLoop()->addTimer_forMode(timer, NSModalPanelRunLoopMode.get());
        const NSInteger code = p->runModal();
        EXPECT_EQ(steps, 1);
        steps = 0;
        NSPrintOperation::setCurrentOperation(nullptr);
        return code;
    }
    /// The controls of a kind that show, in order.
    template <class T> static std::vector<T*> shown(NSWindow* w) {
        std::vector<T*> all;
        for (NSView* v : w->contentView()->subviews())
            if (auto* t = as<T>(v); t && !v->isHidden()) all.push_back(t);
        return all;
    }
    static std::vector<NSTextField*> fields(NSWindow* w) {
        auto all = shown<NSTextField>(w);
        std::erase_if(all, [](NSTextField* f) { return !f->isEditable(); });
        return all;
    }
    static NSButton* button(NSWindow* w, NSString* title) {
        for (auto* b : shown<NSButton>(w))
            if (b->title() && b->title()->isEqualToString(title)) return b;
        ADD_FAILURE() << "no button " << title->utf8();
        return nullptr;
    }
    static std::string texts(NSWindow* w) {
        std::string all;
        for (auto* f : shown<NSTextField>(w))
            all += f->stringValue()->utf8() + "\n";
        return all;
    }
    void type(NSTextField* field, std::u16string_view text) const {
        field->selectText(nullptr);
        windows().typeText(text);
        drain();
    }
};

TEST_F(NSPrintPanelTest, returnTakesWhatWasChosen) {
    printing().addPrinter({"bureau", "Bureau", true, true}, {{"iso_a5_148x210mm", "A5", {419.5, 595.3}}});
    info->setJobDisposition(NSPrintSpoolJob.get());
    const auto o = operation(view);
    const NSInteger code = panel(o, [&](NSWindow* w) {
        EXPECT_EQ(shown<NSPopUpButton>(w)[0]->titleOfSelectedItem()->utf8(), "Bureau");
        const auto f = fields(w); // copies, from, to, scale
        ASSERT_EQ(f.size(), 4u);
        type(f[0], u"4");
        type(f[3], u"50");
        EXPECT_NE(texts(w).find("Page 1 sur 2"), std::string::npos) << texts(w);
        button(w, u"Paysage"_ns)->performClick(nullptr);
        EXPECT_NE(texts(w).find("Page 1 sur 2"), std::string::npos) << texts(w);
        type(f[1], u"2");
        type(f[2], u"2");
        EXPECT_NE(texts(w).find("Page 2 sur 2"), std::string::npos) << texts(w);
        windows().key(u'\r');
    });
    EXPECT_EQ(code, NSPrintPanelAccepted);
    const NSPrintInfo& chosen = *o->printInfo();
    EXPECT_EQ(chosen.printerName()->utf8(), "bureau");
    EXPECT_TRUE(chosen.jobDisposition()->isEqualToString(NSPrintSpoolJob.get()));
    EXPECT_EQ(chosen.copies(), 4);
    EXPECT_EQ(chosen.scalingFactor(), 0.5);
    EXPECT_EQ(chosen.orientation(), NSPaperOrientationLandscape);
    EXPECT_FALSE(chosen.printsAllPages());
    EXPECT_EQ(chosen.firstPage(), 2);
    EXPECT_EQ(chosen.lastPage(), 2);
    EXPECT_FALSE(view->drewToScreen);
}

TEST_F(NSPrintPanelTest, escapeLeavesThePrintInfoAsItWas) {
    const auto o = operation(view);
    const Ref<NSDictionary> before = o->printInfo()->dictionary();
    const NSInteger code = panel(o, [&](NSWindow* w) {
        button(w, u"Paysage"_ns)->performClick(nullptr);
        auto* paper = shown<NSPopUpButton>(w)[1];
        paper->selectItemAtIndex(0);
        paper->sendAction_to(paper->action(), paper->target());
        windows().key(0x1B);
    });
    EXPECT_EQ(code, NSPrintPanelCancelled);
    const Ref<NSDictionary> after = o->printInfo()->dictionary();
    EXPECT_TRUE(after->isEqual(before));
}

TEST_F(NSPrintPanelTest, aPanelThatWasThrownOutOfComesUpAgain) {
    const auto o = operation(view);
    view->pages = [](NSRange*) -> BOOL { throw std::runtime_error("no pages"); };
    NSPrintOperation::setCurrentOperation(o);
    EXPECT_THROW(o->printPanel()->runModal(), std::runtime_error);
    EXPECT_EQ(o->printPanel()->window_(), nullptr);
    view->pages = nullptr;
    EXPECT_EQ(panel(o, [&](NSWindow*) { windows().key(u'\r'); }), NSPrintPanelAccepted);
}

TEST_F(NSPrintPanelTest, whatIsWrongIsSaidAndNotAccepted) {
    const Folder dossier;
    const auto o = operation(view);
    const auto saved = dossier.path / "liste.pdf";
    struct Row {
        std::string path;
        std::u16string_view from, to, scale;
        const char* says;
    };
    const std::string good = saved.string();
    const Row rows[] = {
        {(dossier.path / "absent/liste.pdf").string(), u"1", u"2", u"100", "Ce dossier n’existe pas."},
        {dossier.path.string(), u"1", u"2", u"100", "Ce chemin est celui d’un dossier."},
        {good, u"5", u"9", u"100", "Indiquez des pages entre 1 et 3."},
        {good, u"3", u"2", u"100", "Indiquez des pages entre 1 et 3."},
        {good, u"deux", u"2", u"100", "Indiquez des pages entre 1 et 3."},
        {good, u"1", u"2", u"5", "Indiquez une échelle de 10 à 400 %."},
        {good, u"1", u"2", u"99999999999999999999", "Indiquez une échelle de 10 à 400 %."},
    };
    for (const Row& row : rows) {
        const NSInteger code = panel(o, [&](NSWindow* w) {
            const auto f = fields(w); // file, from, to, scale
            ASSERT_EQ(f.size(), 4u);
            type(f[0], NSString::fromUTF8(row.path)->utf16());
            type(f[1], row.from);
            type(f[2], row.to);
            type(f[3], row.scale);
            EXPECT_NE(texts(w).find(row.says), std::string::npos) << texts(w);
            windows().key(u'\r');
            drain();
            EXPECT_TRUE(w->isVisible());
        });
        EXPECT_EQ(code, NSPrintPanelCancelled) << row.says;
    }
    const NSInteger code = panel(o, [&](NSWindow* w) {
        type(fields(w)[0], NSString::fromUTF8(good)->utf16());
        windows().key(u'\r');
    });
    EXPECT_EQ(code, NSPrintPanelAccepted);
    EXPECT_EQ(o->printInfo()->jobSavingURL()->path()->utf8(), good);
    EXPECT_TRUE(o->printInfo()->jobDisposition()->isEqualToString(NSPrintSaveJob.get()));
}

TEST_F(NSPrintPanelTest, thePreviewGoesThroughThePages) {
    view->border = YES;
    std::vector<NSInteger> drawn;
    view->onPage = [&] { drawn.push_back(NSPrintOperation::currentOperation()->currentPage()); };
    (void)panel(operation(view), [&](NSWindow* w) {
        EXPECT_EQ(drawn, std::vector<NSInteger>{1});
        auto* next = button(w, u"›"_ns);
        next->performClick(nullptr);
        next->performClick(nullptr);
        EXPECT_FALSE(next->isEnabled());
        button(w, u"‹"_ns)->performClick(nullptr);
    });
    EXPECT_EQ(drawn, (std::vector<NSInteger>{1, 2, 3, 2}));
    EXPECT_FALSE(view->drewToScreen);
}

TEST_F(NSPrintPanelTest, optionsDecideWhatIsOffered) {
    struct Row {
        NSUInteger options;
        const char *shows, *hides;
    };
    const Row rows[] = {{0, "Imprimante", "Pages"},
                        {NSPrintPanelShowsPageRange, "Pages", "Papier"},
                        {NSPrintPanelShowsPaperSize, "Papier", "Orientation"},
                        {NSPrintPanelShowsOrientation, "Orientation", "Échelle"},
                        {NSPrintPanelShowsScaling, "Échelle", "Pages"},
                        {NSPrintPanelShowsPreview, "Page 1 sur 3", "Échelle"}};
    for (const Row& row : rows) {
        options = row.options;
        (void)panel(operation(view), [&](NSWindow* w) {
            EXPECT_NE(texts(w).find(row.shows), std::string::npos) << row.shows;
            EXPECT_EQ(texts(w).find(row.hides), std::string::npos) << row.hides;
            // Nothing stands out of the window or over anything else.
            const NSRect all = w->contentView()->bounds();
            const auto views = shown<NSView>(w);
            for (std::size_t i = 0; i < views.size(); ++i) {
                EXPECT_TRUE(NSContainsRect(all, views[i]->frame()));
                for (std::size_t j = i + 1; j < views.size(); ++j)
                    EXPECT_FALSE(NSIntersectsRect(views[i]->frame(), views[j]->frame()))
                        << NSStringFromRect(views[i]->frame())->utf8() << NSStringFromRect(views[j]->frame())->utf8();
            }
        });
    }
}

} // namespace
