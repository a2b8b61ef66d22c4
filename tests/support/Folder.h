#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <libvue/platform/foundation/NSString.h>

namespace libvue::test {

/// A folder of its own among the temporary files, gone at the end.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vue-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    /// The path of what has that name in it; its own without one.
    Ref<NSString> at(const std::string& name = {}) const {
        return NSString::fromUTF8((name.empty() ? path : path / name).string());
    }
    void write(const std::string& name, std::string_view bytes) const {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << bytes;
    }
    std::string read(const std::string& name) const {
        std::ifstream in(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& e : std::filesystem::directory_iterator(path))
            all.push_back(e.path().filename().string());
        return all;
    }
    std::filesystem::path path;
};

} // namespace libvue::test
