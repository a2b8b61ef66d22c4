#include <libvue/platform/appkit/PrintPanelWindow.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPrintPanel.h>
#include <libvue/platform/appkit/PrintPages.h>
#include <libvue/platform/appkit/PrintPanelForm.h>
#include <libvue/platform/appkit/PrintPreviewView.h>
#include <libvue/platform/appkit/PrintProgress.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSFileManager.h>
#include <libvue/platform/foundation/NSNotification.h>

namespace libvue {

namespace {

const Operation<void(NSObject*)> acceptOperation{"accept:"};
const Operation<void(NSObject*)> cancelOperationName{"cancelOperation:"};
const Operation<void(NSObject*)> chooseDestinationOperation{"chooseDestination:"};
const Operation<void(NSObject*)> choosePaperOperation{"choosePaper:"};
const Operation<void(NSObject*)> chooseOrientationOperation{"chooseOrientation:"};
const Operation<void(NSObject*)> choosePagesOperation{"choosePages:"};
const Operation<void(NSObject*)> previousPageOperation{"previousPage:"};
const Operation<void(NSObject*)> nextPageOperation{"nextPage:"};

constexpr CGFloat kLeastScale = 0.1, kMostScale = 4;

Ref<NSString> titleOf(const backend::Paper& paper) {
    constexpr double mm = 25.4 / 72;
    return NSString::stringWithFormat(u"%@ (%.0f × %.0f mm)"_ns, NSString::fromUTF8(paper.title).get(),
                                      paper.size.width * mm, paper.size.height * mm);
}

/// The whole number that the field holds; nothing else counts.
std::optional<NSInteger> wholeNumber(const NSTextField* field) {
    const Ref<NSString> text = field->stringValue();
    const std::string s = text->utf8();
    constexpr std::size_t mostDigits = 9;
    if (s.empty() || s.size() > mostDigits || s.find_first_not_of("0123456789") != std::string::npos) return {};
    return std::stol(s);
}

} // namespace

void PrintPanelWindow::describe(ClassDescription<PrintPanelWindow, NSPanel>& c) {
    c.answers<&PrintPanelWindow::accept>(acceptOperation);
    c.answers<&PrintPanelWindow::cancelOperation>(cancelOperationName);
    c.answers<&PrintPanelWindow::chooseDestination>(chooseDestinationOperation);
    c.answers<&PrintPanelWindow::choosePaper>(choosePaperOperation);
    c.answers<&PrintPanelWindow::chooseOrientation>(chooseOrientationOperation);
    c.answers<&PrintPanelWindow::choosePages>(choosePagesOperation);
    c.answers<&PrintPanelWindow::previousPage>(previousPageOperation);
    c.answers<&PrintPanelWindow::nextPage>(nextPageOperation);
    c.answers<&PrintPanelWindow::controlTextDidChange>(op::controlTextDidChange);
}

PrintPanelWindow::PrintPanelWindow(NSPrintOperation* operation, NSUInteger options, NSString* buttonTitle)
    : NSPanel({{0, 0}, {400, 300}}, NSTitledWindowMask | NSClosableWindowMask),
      operation_(operation),
      options_(options),
      buttonTitle_(buttonTitle),
      form_(make<PrintPanelForm>(options)) {
    setTitle(u"Imprimer"_ns);
    setReleasedWhenClosed(NO);
    const NSPrintInfo& info = *operation->printInfo();
    const auto wire = [this](NSControl* control, const Operation<void(NSObject*)>& action) {
        control->setTarget(this);
        control->setAction(action);
    };
    wire(form_->destination, chooseDestinationOperation);
    wire(form_->paper, choosePaperOperation);
    for (NSButton* b : {form_->portrait.get(), form_->landscape.get()})
        wire(b, chooseOrientationOperation);
    for (NSButton* b : {form_->allPages.get(), form_->somePages.get()})
        wire(b, choosePagesOperation);
    wire(form_->previous, previousPageOperation);
    wire(form_->next, nextPageOperation);
    wire(form_->cancel, cancelOperationName);
    wire(form_->accept, acceptOperation);
    for (NSTextField* f : form_->fields())
        f->setDelegate(this);

    form_->copies->setIntegerValue(info.copies());
    form_->scale->setIntegerValue(std::lround(info.scalingFactor() * 100));
    form_->landscape->setState(info.orientation() == NSPaperOrientationLandscape ? NSOnState : NSOffState);
    form_->portrait->setState(info.orientation() == NSPaperOrientationPortrait ? NSOnState : NSOffState);
    form_->allPages->setState(info.printsAllPages() ? NSOnState : NSOffState);
    form_->somePages->setState(info.printsAllPages() ? NSOffState : NSOnState);
    form_->first->setIntegerValue(info.firstPage());
    form_->last->setIntegerValue(info.lastPage());
    if (options & NSPrintPanelShowsPreview) {
        preview_ = make<PrintPreviewView>(NSZeroRect, operation);
        form_->preview = preview_;
        form_->addSubview(preview_);
    }
    setContentView(form_);
    fillDestinations();
    fillPapers();
}

PrintPanelWindow::~PrintPanelWindow() = default;

void PrintPanelWindow::fillDestinations() {
    const NSPrintInfo& info = *operation_->printInfo();
    printers_ = backend::Backend::current().printing->printers();
    auto& popup = *form_->destination;
    std::size_t chosen = printers_.size(); // the PDF file, unless a printer is there
    for (std::size_t i = 0; i < printers_.size(); ++i) {
        const auto& p = printers_[i];
        popup.addItemWithTitle(NSString::fromUTF8(p.title));
        const bool isNamed = info.printerName() && info.printerName()->utf8() == p.name;
        if (isNamed || (chosen == printers_.size() && p.isDefault && !info.printerName())) chosen = i;
    }
    if (chosen == printers_.size() && !printers_.empty()) chosen = 0;
    if (!printers_.empty()) popup.menu()->addItem(NSMenuItem::separatorItem());
    popup.addItemWithTitle(u"Enregistrer en PDF…"_ns);
    popup.addItemWithTitle(u"Ouvrir dans le lecteur de PDF"_ns);
    const auto file = static_cast<NSInteger>(printers_.empty() ? 0 : printers_.size() + 1);
    const auto is = [&](const ConstantString& d) { return info.jobDisposition()->isEqualToString(d.get()); };
    popup.selectItemAtIndex(is(NSPrintSaveJob)      ? file
                            : is(NSPrintPreviewJob) ? file + 1
                            : printers_.empty()     ? file
                                                    : static_cast<NSInteger>(chosen));
    Ref<NSString> path;
    if (info.jobSavingURL()) path = info.jobSavingURL()->path();
    if (!path) {
        const Ref<NSString> title = operation_->jobTitle();
        std::string name = title->utf8();
        std::ranges::replace(name, '/', '-');
        if (name.empty() || name[0] == '.') name = "Document";
        path = NSHomeDirectory()->stringByAppendingPathComponent(NSString::fromUTF8(name + ".pdf"));
    }
    form_->file->setStringValue(path);
}

PrintPanelWindow::Destination PrintPanelWindow::destination() const {
    const NSInteger i = form_->destination->indexOfSelectedItem();
    const auto printers = static_cast<NSInteger>(printers_.size());
    if (i >= 0 && i < printers) return Destination::printer;
    return i == form_->destination->numberOfItems() - 1 ? Destination::viewer : Destination::file;
}

void PrintPanelWindow::fillPapers() {
    const NSPrintInfo& info = *operation_->printInfo();
    const bool toPrinter = destination() == Destination::printer;
    const std::string printer =
        toPrinter ? printers_[static_cast<std::size_t>(form_->destination->indexOfSelectedItem())].name : "";
    papers_ = backend::Backend::current().printing->papers(printer);
    NSSize upright = info.paperSize();
    if (upright.width > upright.height) std::swap(upright.width, upright.height);
    auto at = std::ranges::find_if(papers_, [&](const backend::Paper& p) { return p.isOfSize(upright); });
    if (at == papers_.end()) at = papers_.insert(papers_.end(), {"", "Personnalisé", upright});
    form_->paper->removeAllItems();
    for (const auto& p : papers_)
        form_->paper->addItemWithTitle(titleOf(p));
    form_->paper->selectItemAtIndex(at - papers_.begin());
}

Ref<NSString> PrintPanelWindow::savingPath() const {
    Ref<NSString> path = form_->file->stringValue();
    path = path->stringByExpandingTildeInPath();
    if (path->length() > 0 && !path->hasPrefix(u"/"_ns)) path = NSHomeDirectory()->stringByAppendingPathComponent(path);
    return path;
}

void PrintPanelWindow::layOut() {
    // The top left corner stays where it is.
    const NSRect before = frame();
    form_->arrange(destination() == Destination::file);
    const NSSize size = form_->frame().size;
    setContentSize(size);
    if (isVisible()) setFrameTopLeftPoint({before.origin.x, NSMaxY(before)});
    const bool saves = destination() == Destination::file;
    const Ref<NSString> usual = saves ? u"Enregistrer"_ns : u"Imprimer"_ns;
    form_->accept->setTitle(buttonTitle_ ? buttonTitle_ : usual);
}

void PrintPanelWindow::readFields() {
    NSPrintInfo& info = *operation_->printInfo();
    if (const auto n = wholeNumber(form_->copies)) info.setCopies(*n);
    info.setPrintsAllPages(form_->allPages->state() == NSOnState);
    const auto first = wholeNumber(form_->first), last = wholeNumber(form_->last);
    if (first && last) info.setFirstPage_lastPage(*first, *last);
    if (const auto percent = wholeNumber(form_->scale))
        if (const CGFloat scale = static_cast<CGFloat>(*percent) / 100; scale >= kLeastScale && scale <= kMostScale)
            info.setScalingFactor(scale);
}

Ref<NSString> PrintPanelWindow::fault() const {
    if (destination() == Destination::file) {
        const Ref<NSString> path = savingPath();
        BOOL isFolder = NO;
        auto* files = NSFileManager::defaultManager();
        const Ref<NSString> folder = path->stringByDeletingLastPathComponent();
        if (path->length() == 0) return u"Indiquez où enregistrer le fichier."_ns;
        if (files->fileExistsAtPath_isDirectory(path, &isFolder) && isFolder)
            return u"Ce chemin est celui d’un dossier."_ns;
        if (!files->fileExistsAtPath_isDirectory(folder, &isFolder) || !isFolder) return u"Ce dossier n’existe pas."_ns;
    }
    if (destination() == Destination::printer && (options_ & NSPrintPanelShowsCopies)) {
        const auto copies = wholeNumber(form_->copies);
        if (!copies || *copies < 1 || *copies > NSPrintInfo::mostCopies)
            return NSString::stringWithFormat(u"Indiquez de 1 à %ld copies."_ns,
                                              static_cast<long>(NSPrintInfo::mostCopies));
    }
    if ((options_ & NSPrintPanelShowsPageRange) && form_->somePages->state() == NSOnState) {
        const auto first = wholeNumber(form_->first), last = wholeNumber(form_->last);
        const NSRange range = operation_->pages_()->range();
        const auto end = static_cast<NSInteger>(NSMaxRange(range)) - 1;
        if (!first || !last || *first < 1 || *last < *first || *first > end)
            return end > 1
                       ? NSString::stringWithFormat(u"Indiquez des pages entre 1 et %ld."_ns, static_cast<long>(end))
                       : u"Le document n’a qu’une page."_ns;
    }
    if (options_ & NSPrintPanelShowsScaling) {
        const auto percent = wholeNumber(form_->scale);
        if (!percent || *percent < kLeastScale * 100 || *percent > kMostScale * 100)
            return u"Indiquez une échelle de 10 à 400 %."_ns;
    }
    return nullptr;
}

void PrintPanelWindow::showState() {
    const Ref<NSString> wrong = fault();
    form_->accept->setEnabled(wrong == nullptr);
    const bool replaces =
        !wrong && destination() == Destination::file && NSFileManager::defaultManager()->fileExistsAtPath(savingPath());
    const Ref<NSString> note = replaces ? u"Le fichier existe et sera remplacé."_ns : u""_ns;
    if (wrong)
        form_->say(wrong, PrintPanelForm::Tone::warning);
    else
        form_->say(note, PrintPanelForm::Tone::note);
}

void PrintPanelWindow::repaginate() {
    readFields();
    operation_->layOutPages_();
    // While all pages are chosen the fields say which these are.
    const NSRange range = operation_->pages_()->range();
    if (form_->allPages->state() == NSOnState) {
        form_->first->setIntegerValue(static_cast<NSInteger>(range.location));
        form_->last->setIntegerValue(static_cast<NSInteger>(NSMaxRange(range)) - 1);
    }
    showPage(page_);
    showState();
}

void PrintPanelWindow::showPage(NSInteger page) {
    const NSPrintInfo& info = *operation_->printInfo();
    const NSRange wanted = operation_->pages_()->wanted(info);
    const auto first = static_cast<NSInteger>(wanted.location);
    const auto last = static_cast<NSInteger>(NSMaxRange(wanted)) - 1;
    page_ = wanted.length > 0 ? std::clamp(page, first, last) : 0;
    if (preview_) preview_->show(page_);
    const auto total = static_cast<NSInteger>(NSMaxRange(operation_->pages_()->range())) - 1;
    const Ref<NSString> text = page_ == 0 ? u"Aucune page"_ns : pageOfPages(page_, total);
    form_->pageNumber->setStringValue(text);
    form_->previous->setEnabled(page_ > first);
    form_->next->setEnabled(page_ > 0 && page_ < last);
}

void PrintPanelWindow::turnPages(NSInteger step) { showPage(page_ + step); }
void PrintPanelWindow::previousPage(NSObject*) { turnPages(-1); }
void PrintPanelWindow::nextPage(NSObject*) { turnPages(1); }

void PrintPanelWindow::chooseDestination(NSObject*) {
    fillPapers();
    layOut();
    choosePaper(nullptr);
}

void PrintPanelWindow::choosePaper(NSObject*) {
    const auto i = form_->paper->indexOfSelectedItem();
    if (i < 0 || i >= static_cast<NSInteger>(papers_.size())) return;
    const auto& paper = papers_[static_cast<std::size_t>(i)];
    operation_->printInfo()->setPaper_(paper.size, NSString::fromUTF8(paper.name));
    repaginate();
}

void PrintPanelWindow::chooseOrientation(NSObject*) {
    operation_->printInfo()->setOrientation(form_->landscape->state() == NSOnState ? NSPaperOrientationLandscape
                                                                                   : NSPaperOrientationPortrait);
    repaginate();
}

void PrintPanelWindow::choosePages(NSObject* sender) {
    if (sender == form_->somePages.get()) makeFirstResponder(form_->first);
    readFields();
    showPage(page_);
    showState();
}

void PrintPanelWindow::controlTextDidChange(NSNotification* n) {
    const Ref<NSObject> field(n->object());
    if (auto* control = as<NSControl>(field.get())) control->validateEditing();
    if (field == form_->first.get() || field == form_->last.get()) {
        form_->somePages->setState(NSOnState);
        form_->allPages->setState(NSOffState);
    }
    if (field == form_->scale.get())
        repaginate();
    else {
        readFields();
        if (field == form_->first.get() || field == form_->last.get()) showPage(page_);
        showState();
    }
}

BOOL PrintPanelWindow::ask() {
    const Ref<PrintPanelWindow> self(this);
    NSPrintInfo& info = *operation_->printInfo();
    const auto before = make<NSPrintInfo>();
    before->takeFrom_(info);
    layOut();
    repaginate();
    center();
    NSApp()->runModalForWindow(this);
    orderOut(nullptr);
    if (!accepted_) {
        info.takeFrom_(*before);
        return NO;
    }
    readFields();
    switch (destination()) {
    case Destination::printer: {
        const auto& p = printers_[static_cast<std::size_t>(form_->destination->indexOfSelectedItem())];
        info.setPrinterName(NSString::fromUTF8(p.name));
        info.setJobDisposition(NSPrintSpoolJob.get());
        break;
    }
    case Destination::file:
        info.setJobSavingURL(NSURL::fileURLWithPath(savingPath()));
        info.setJobDisposition(NSPrintSaveJob.get());
        break;
    case Destination::viewer:
        info.setJobDisposition(NSPrintPreviewJob.get());
    }
    return YES;
}

void PrintPanelWindow::accept(NSObject*) {
    makeFirstResponder(nullptr); // takes what is being typed
    if (fault()) {
        showState();
        return;
    }
    accepted_ = true;
    if (NSApp()->modalWindow() == this) NSApp()->stopModal();
}

void PrintPanelWindow::cancelOperation(NSObject*) {
    accepted_ = false;
    if (NSApp()->modalWindow() == this) NSApp()->stopModalWithCode(NSRunAbortedResponse);
}

} // namespace libvue
