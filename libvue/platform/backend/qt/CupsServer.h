#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <libvue/platform/backend/PrintService.h>

/// The print server. Where the library was built without CUPS, or no server answers within two seconds, there are no
/// printers.
namespace libvue::backend::cups {

[[nodiscard]] std::vector<Printer> printers();
/// Empty where the printer does not say.
[[nodiscard]] std::vector<Paper> papers(std::string_view printer);
/// Sends the file, which the server copies.
[[nodiscard]] PrintResult submit(const PrintJob& job, const std::string& path);

} // namespace libvue::backend::cups
