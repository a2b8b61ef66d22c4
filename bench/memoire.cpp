// What one view and one short text take of the heap, the allocator's own share included. No peer: the figures are
// reported.

#include <malloc.h>

#include <optional>
#include <vector>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSString.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int nombre = 10000;

/// Bytes of the heap that each of many objects takes.
template <class T, class F> double octetsChacun(F fais) {
    std::vector<Ref<T>> gardes;
    gardes.reserve(nombre);
    const std::size_t avant = mallinfo2().uordblks;
    for (int i = 0; i < nombre; ++i)
        gardes.push_back(fais());
    return static_cast<double>(mallinfo2().uordblks - avant) / nombre;
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute(banc::CheminLibre{"bytes-view", "B", [] {
                                      return banc::Mesures{octetsChacun<NSView>([] {
                                                               return make<NSView>(NSRect{{0, 0}, {10, 10}});
                                                           }),
                                                           std::nullopt};
                                  }});
    banc.ajoute(banc::CheminLibre{"bytes-string-10", "B", [] {
                                      return banc::Mesures{
                                          octetsChacun<NSString>([] { return NSString::fromLatin1("0123456789"); }),
                                          std::nullopt};
                                  }});
    return banc.lance(argc, argv);
}
