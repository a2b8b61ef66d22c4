#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Types.h>

namespace libvue {

class Class;
class NSArchiver;
class NSArray;
class NSAttributedString;
class NSBundle;
class NSCharacterSet;
class NSCoder;
class NSCountedSet;
class NSData;
class NSDate;
class NSDateFormatter;
class NSDecimalNumber;
class NSDictionary;
class NSEnumerator;
class NSError;
class NSException;
class NSFileManager;
class NSFormatter;
class NSIndexPath;
class NSIndexSet;
class NSKeyedArchiver;
class NSKeyedUnarchiver;
class NSLocale;
class NSMutableArray;
class NSMutableAttributedString;
class NSMutableCharacterSet;
class NSMutableData;
class NSMutableDictionary;
class NSMutableIndexSet;
class NSMutableSet;
class NSMutableString;
class NSNotification;
class NSNotificationCenter;
class NSNull;
class NSNumber;
class NSNumberFormatter;
class NSObject;
class NSProcessInfo;
class NSRunLoop;
class NSScanner;
class NSSet;
class NSSortDescriptor;
class NSString;
class NSTimer;
class NSURL;
class NSUnarchiver;
class NSUserDefaults;
class NSValue;
class NSValueTransformer;
class StringBuilder;
struct NSPoint;
struct NSRange;
struct NSRect;
struct NSSize;
struct Selector;
template <class T> class Ref;
template <class T> class Weak;

/// The interned name of an operation; two names are equal when their pointers are.
using SEL = const Selector*;

} // namespace libvue
