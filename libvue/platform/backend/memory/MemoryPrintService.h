#pragma once

#include <libvue/platform/backend/PrintService.h>

namespace libvue::backend {

/// Printers that a program adds, and jobs that are kept for it to look at. Documents that go to a file are written.
class LIBVUE_API MemoryPrintService final : public PrintService {
public:
    struct Job {
        PrintJob job;
        int pages = 0;
        std::vector<std::uint8_t> bytes; ///< the PDF
    };

    /// `graphics` must outlive this.
    explicit MemoryPrintService(GraphicsEngine& graphics) noexcept : graphics_(graphics) {}

    [[nodiscard]] std::vector<Printer> printers() override { return printers_; }
    [[nodiscard]] std::vector<Paper> papers(std::string_view printer) override;
    [[nodiscard]] std::unique_ptr<PrintDocument> begin(const PrintJob& job, std::string* error) override;

    /// An empty list of papers stands for the usual ones.
    void addPrinter(Printer printer, std::vector<Paper> papers = {});
    /// The jobs that were finished, in order.
    [[nodiscard]] const std::vector<Job>& jobs() const noexcept { return jobs_; }
    /// The documents that were begun and given up.
    [[nodiscard]] int abandoned() const noexcept { return abandoned_; }
    /// Every document fails at its end with that reason; empty for none.
    void setFailure(std::string reason) { failure_ = std::move(reason); }

private:
    class Document;
    GraphicsEngine& graphics_;
    std::vector<Printer> printers_;
    std::vector<std::vector<Paper>> papers_;
    std::vector<Job> jobs_;
    std::string failure_;
    int abandoned_ = 0;
};

} // namespace libvue::backend
