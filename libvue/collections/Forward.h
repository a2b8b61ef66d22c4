#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class BassinCirculaire;
class KCCollectionItemView;
class KCCollectionView;
class KCNibHelper;
class ListeCirculaire;

} // namespace libvue
