#pragma once

#include <libvue/platform/backend/PrintService.h>

namespace libvue::backend {

/// Pages become a PDF; the printers are those of the CUPS server, where there is one.
class QtPrinting final : public PrintService {
public:
    [[nodiscard]] std::vector<Printer> printers() override;
    [[nodiscard]] std::vector<Paper> papers(std::string_view printer) override;
    [[nodiscard]] std::unique_ptr<PrintDocument> begin(const PrintJob& job, std::string* error) override;
};

} // namespace libvue::backend
