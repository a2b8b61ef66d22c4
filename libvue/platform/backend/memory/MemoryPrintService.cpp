#include <libvue/platform/backend/memory/MemoryPrintService.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/stat.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/Files.h>

namespace libvue::backend {

namespace {

mode_t usualMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

class MemoryPrintService::Document final : public PrintDocument {
public:
    Document(MemoryPrintService& service, const PrintJob& job)
        : service_(service), job_{job, 0, {}}, pdf_(service.graphics_.makePDF(job.page, job.title)) {}
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() override {
        if (!finished_) ++service_.abandoned_;
    }

    Canvas& beginPage() override {
        if (job_.pages++ > 0) service_.graphics_.beginPage(pdf_);
        return *pdf_.canvas;
    }

    PrintResult finish() override {
        PrintResult result;
        if (job_.pages == 0) return result;
        if (!service_.failure_.empty()) {
            result.error = service_.failure_;
            return result;
        }
        job_.bytes = service_.graphics_.finish(pdf_);
        if (job_.job.printer.empty() && !job_.job.file.empty()) {
            const std::string_view bytes(reinterpret_cast<const char*>(job_.bytes.data()), job_.bytes.size());
            if (!libvue::detail::replaceFile(libvue::detail::fileMeantBy(job_.job.file), bytes, usualMode())) {
                result.error = std::strerror(errno);
                return result;
            }
        } else if (job_.job.printer.empty())
            result.bytes = job_.bytes;
        finished_ = true;
        service_.jobs_.push_back(std::move(job_));
        result.number = static_cast<int>(service_.jobs_.size());
        result.done = true;
        return result;
    }

private:
    MemoryPrintService& service_;
    Job job_;
    GraphicsEngine::PDF pdf_;
    bool finished_ = false;
};

std::vector<Paper> MemoryPrintService::papers(std::string_view printer) {
    const auto found = std::ranges::find(printers_, printer, &Printer::name);
    if (found == printers_.end()) return usualPapers();
    const auto& own = papers_[static_cast<std::size_t>(found - printers_.begin())];
    return own.empty() ? usualPapers() : own;
}

std::unique_ptr<PrintDocument> MemoryPrintService::begin(const PrintJob& job, std::string* error) {
    const auto known = std::ranges::find(printers_, job.printer, &Printer::name);
    if (!job.printer.empty() && known == printers_.end()) {
        if (error) *error = "there is no printer " + job.printer;
        return nullptr;
    }
    return std::make_unique<Document>(*this, job);
}

void MemoryPrintService::addPrinter(Printer printer, std::vector<Paper> papers) {
    printers_.push_back(std::move(printer));
    papers_.push_back(std::move(papers));
}

std::unique_ptr<PrintService> makeMemoryPrinting(GraphicsEngine& graphics) {
    return std::make_unique<MemoryPrintService>(graphics);
}

} // namespace libvue::backend
