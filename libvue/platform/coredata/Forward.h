#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class NSAttributeDescription;
class NSEntityDescription;
class NSManagedObject;
class NSManagedObjectContext;
class NSManagedObjectModel;
class NSPropertyDescription;
class NSRelationshipDescription;

} // namespace libvue
