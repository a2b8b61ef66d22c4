#pragma once

#include <string>
#include <vector>

namespace banc {

/// A document of the paths of JSON, as UTF-8.
struct DocumentJson {
    std::string nom; ///< such as "twitter"
    std::string octets;
};

/// The three documents: twitter (texts of many scripts), citm_catalog (small objects and integers) and canada
/// (coordinates). They are read from the folder that LIBVUE_BENCH_JSON names; without it comparable ones are made, the
/// same at every run. Ends the process where a file cannot be read.
[[nodiscard]] const DocumentJson& documentJson(const std::string& nom);
[[nodiscard]] std::vector<std::string> nomsDocumentsJson();

} // namespace banc
