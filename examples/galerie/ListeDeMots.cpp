#include <ListeDeMots.h>

#include <fstream>
#include <iterator>

namespace galerie {

std::string listeDeMots() {
    std::ifstream fichier("/usr/share/dict/french", std::ios::binary);
    return {std::istreambuf_iterator<char>(fichier), std::istreambuf_iterator<char>()};
}

} // namespace galerie
