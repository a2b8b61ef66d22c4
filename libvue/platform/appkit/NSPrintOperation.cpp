#include <libvue/platform/appkit/NSPrintOperation.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <libvue/platform/appkit/NSWorkspace.h>
#include <libvue/platform/appkit/PrintProgress.h>
#include <libvue/platform/appkit/PrintState.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/Files.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

namespace {

/// Shorter jobs are done before anybody could read how far they are.
constexpr NSInteger pagesWithoutProgress = 8;

Weak<NSPrintOperation>& current() {
    static auto& operation = *new Weak<NSPrintOperation>;
    return operation;
}

/// Makes an operation the current one for a block.
class CurrentScope {
public:
    explicit CurrentScope(NSPrintOperation* operation) : former_(current()) { current() = operation; }
    ~CurrentScope() { current() = former_.get(); }
    CurrentScope(const CurrentScope&) = delete;
    CurrentScope& operator=(const CurrentScope&) = delete;

private:
    Ref<NSPrintOperation> former_;
};

/// A place for the document that the desktop's viewer opens; the viewer may be looking at it for long.
std::string previewFile(const std::string& title) {
    std::string folder = (std::filesystem::temp_directory_path() / "apercu-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return {};
    std::string name = title.empty() ? "Document" : title;
    for (char& c : name)
        if (c == '/' || c == '\0') c = '-';
    constexpr std::size_t longest = 100;
    if (name.size() > longest) name = "Document";
    return folder + "/" + name + ".pdf";
}

} // namespace

void NSPrintOperation::describe(ClassDescription<NSPrintOperation>&) {}

NSPrintOperation::NSPrintOperation(NSView* view, NSPrintInfo* info) : state_(std::make_unique<State>()) {
    if (!view) raiseNamed(NSInvalidArgumentException, "a print operation without a view");
    state_->view = view;
    state_->info = make<NSPrintInfo>();
    state_->info->takeFrom_(info ? *info : *NSPrintInfo::sharedPrintInfo());
}

NSPrintOperation::~NSPrintOperation() = default;

Ref<NSPrintOperation> NSPrintOperation::printOperationWithView_printInfo(NSView* view, NSPrintInfo* info) {
    return adopt(new NSPrintOperation(view, info));
}

Ref<NSPrintOperation> NSPrintOperation::printOperationWithView(NSView* view) {
    return printOperationWithView_printInfo(view, nullptr);
}

Ref<NSPrintOperation> NSPrintOperation::PDFOperationWithView_insideRect_toPath_printInfo(NSView* view, const NSRect& r,
                                                                                         NSString* path,
                                                                                         NSPrintInfo* info) {
    auto operation = adopt(new NSPrintOperation(view, info));
    State& state = *operation->state_;
    state.copying = true;
    state.copied = r;
    state.showsPanel = state.showsProgress = false;
    for (const auto set : {&NSPrintInfo::setLeftMargin, &NSPrintInfo::setRightMargin, &NSPrintInfo::setTopMargin,
                           &NSPrintInfo::setBottomMargin})
        (state.info.get()->*set)(0);
    state.info->setScalingFactor(1);
    state.info->setPaperSize(r.size);
    state.info->setJobDisposition(NSPrintSaveJob.get());
    const Ref<NSURL> url = path ? NSURL::fileURLWithPath(path) : nullptr;
    state.info->setJobSavingURL(url);
    return operation;
}

Ref<NSPrintOperation> NSPrintOperation::PDFOperationWithView_insideRect(NSView* view, const NSRect& r) {
    return PDFOperationWithView_insideRect_toPath_printInfo(view, r, nullptr, nullptr);
}

NSPrintOperation* NSPrintOperation::currentOperation() noexcept { return current(); }
void NSPrintOperation::setCurrentOperation(NSPrintOperation* operation) { current() = operation; }

NSView* NSPrintOperation::view() const noexcept { return state_->view; }
NSPrintInfo* NSPrintOperation::printInfo() const noexcept {
    return state_->viewUnits ? state_->viewUnits : state_->info;
}
void NSPrintOperation::setPrintInfo(NSPrintInfo* info) {
    if (info) state_->info->takeFrom_(*info);
}
NSPrintPanel* NSPrintOperation::printPanel() {
    if (!state_->panel) state_->panel = make<NSPrintPanel>();
    return state_->panel;
}
void NSPrintOperation::setPrintPanel(NSPrintPanel* panel) { state_->panel = panel; }
Ref<NSString> NSPrintOperation::jobTitle() const {
    if (state_->title) return state_->title;
    const Ref<NSString> own = state_->view->printJobTitle();
    return own ? own : u""_ns;
}
void NSPrintOperation::setJobTitle(NSString* title) { state_->title = title; }
BOOL NSPrintOperation::showsPrintPanel() const noexcept { return state_->showsPanel; }
void NSPrintOperation::setShowsPrintPanel(BOOL f) noexcept { state_->showsPanel = f; }
BOOL NSPrintOperation::showsProgressPanel() const noexcept { return state_->showsProgress; }
void NSPrintOperation::setShowsProgressPanel(BOOL f) noexcept { state_->showsProgress = f; }
BOOL NSPrintOperation::isCopyingOperation() const noexcept { return state_->copying; }
NSInteger NSPrintOperation::currentPage() const noexcept { return state_->page; }
NSRange NSPrintOperation::pageRange() const noexcept {
    return state_->pages ? state_->pages->range() : NSRange{static_cast<NSUInteger>(NSNotFound), 0};
}
void NSPrintOperation::cancel() { state_->cancelled = true; }
BOOL NSPrintOperation::isCancelled() const noexcept { return state_->cancelled; }
NSError* NSPrintOperation::error() const noexcept { return state_->error; }
Ref<NSData> NSPrintOperation::data() const { return state_->data; }
PrintPages* NSPrintOperation::pages_() const noexcept { return state_->pages.get(); }
CGFloat NSPrintOperation::drawnScale_() const noexcept { return state_->drawnScale; }

PrintPages& NSPrintOperation::layOutPages_() {
    const CurrentScope scope(this);
    state_->pages.reset();
    state_->pages = std::make_unique<PrintPages>(*this, state_->view);
    return *state_->pages;
}

void NSPrintOperation::drawPage_(NSInteger page, backend::Canvas& canvas) {
    const CurrentScope scope(this);
    PrintPages& pages = state_->pages ? *state_->pages : layOutPages_();
    const ScopeExit asBefore([state = state_.get(), former = state_->page] { state->page = former; });
    pages.draw(page, canvas);
}

BOOL NSPrintOperation::runOperation() {
    const Ref<NSPrintOperation> self(this);
    const CurrentScope scope(this);
    state_->error = nullptr;
    state_->data = nullptr;
    state_->cancelled = false;
    if (state_->showsPanel && printPanel()->runModal() != NSPrintPanelAccepted) {
        state_->cancelled = true;
        return NO;
    }
    const BOOL done = deliver();
    if (!done && !state_->cancelled && state_->showsPanel && state_->error)
        showPrintFailure(u"Le document n’a pas pu être imprimé."_ns,
                         Ref<NSString>(state_->error->localizedDescription()));
    return done;
}

BOOL NSPrintOperation::fail(const std::string& reason) {
    state_->error = NSError::errorWithDomain_code_userInfo(
        u"NSPrintErrorDomain"_ns, 1,
        NSDictionary::dictionaryWithObject_forKey(NSString::fromUTF8(reason), NSLocalizedDescriptionKey.get()));
    return NO;
}

BOOL NSPrintOperation::deliver() {
    const Ref<NSView> view(state_->view);
    const NSPrintInfo& info = *state_->info;
    const auto is = [&](const ConstantString& d) { return info.jobDisposition()->isEqualToString(d.get()); };
    if (is(NSPrintCancelJob)) {
        state_->cancelled = true;
        return NO;
    }
    auto& service = *backend::Backend::current().printing;
    backend::PrintJob job;
    const Ref<NSString> title = jobTitle();
    job.title = title->utf8();
    job.page = info.paperSize();
    if (info.paperName()) job.paper = info.paperName()->utf8();
    job.copies = static_cast<int>(info.copies());
    if (is(NSPrintSpoolJob)) {
        if (info.printerName())
            job.printer = info.printerName()->utf8();
        else
            for (const auto& p : service.printers())
                if (job.printer.empty() || p.isDefault) job.printer = p.name;
        if (job.printer.empty()) return fail("Aucune imprimante n’est disponible.");
    } else if (is(NSPrintPreviewJob)) {
        job.file = previewFile(job.title);
        if (job.file.empty()) return fail("L’aperçu ne peut pas être préparé.");
    } else if (info.jobSavingURL()) {
        const Ref<NSString> path = info.jobSavingURL()->path();
        job.file = detail::fileName(path);
        if (job.file.empty()) return fail("Le fichier PDF n’a pas d’emplacement valable.");
    }

    const ScopeExit reset([state = state_.get()] { state->page = 0; });
    view->beginDocument();
    const ScopeExit ended([&view] { view->endDocument(); });
    std::string reason;
    if (state_->copying) state_->pages.reset();
    NSRange wanted{1, 1};
    if (!state_->copying) wanted = layOutPages_().wanted(info);
    if (wanted.length == 0) return fail("Aucune page n’est comprise dans l’intervalle demandé.");
    const auto document = service.begin(job, &reason);
    if (!document) return fail(reason);
    if (state_->copying)
        PrintPages::drawCopy(*this, state_->copied, document->beginPage());
    else if (!printPages(*state_->pages, *document, static_cast<NSInteger>(wanted.location),
                         static_cast<NSInteger>(NSMaxRange(wanted)) - 1)) {
        state_->cancelled = true;
        return NO;
    }
    const backend::PrintResult result = document->finish();
    if (!result.done) return fail(result.error);
    if (!result.bytes.empty()) state_->data = NSData::dataWithBytes_length(result.bytes.data(), result.bytes.size());
    if (is(NSPrintPreviewJob) && !NSWorkspace::sharedWorkspace()->openFile(NSString::fromUTF8(job.file)))
        return fail("Aucune application n’ouvre les fichiers PDF.");
    return YES;
}

BOOL NSPrintOperation::printPages(PrintPages& pages, backend::PrintDocument& document, NSInteger first,
                                  NSInteger last) {
    NSInteger page = first;
    if (!state_->showsProgress || last - first < pagesWithoutProgress) {
        for (; page <= last && !state_->cancelled; ++page)
            pages.draw(page, document.beginPage());
        return !state_->cancelled;
    }
    const Ref<NSString> title = jobTitle();
    const auto progress = make<PrintProgress>(title, last - first + 1);
    const BOOL finished = progress->runSteps([&] {
        if (state_->cancelled) return false;
        pages.draw(page, document.beginPage());
        progress->setDone(page - first + 1);
        return ++page <= last;
    });
    return finished && !state_->cancelled;
}

} // namespace libvue
