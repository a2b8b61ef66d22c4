#include "PremierePeinture.h"

#include <vector>

namespace banc {

Mesures tourATour(int fois, const std::function<double(int)>& notre, const std::function<double(int)>& pair) {
    std::vector<double> notres, pairs;
    for (int i = 0; i < fois; ++i) {
        const double a = notre(i), b = pair ? pair(i) : 0;
        if (i < fois / 10) continue;
        notres.push_back(a * 1e6);
        pairs.push_back(b * 1e6);
    }
    Mesures m;
    m.notre = mediane(std::move(notres));
    if (pair) m.pair = mediane(std::move(pairs));
    return m;
}

} // namespace banc
