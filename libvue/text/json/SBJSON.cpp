#include <libvue/text/json/SBJSON.h>

#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

namespace libvue {

namespace {

const ClassRegistration<SBJSON> registration;

constexpr NSUInteger usualDepth = 512;

} // namespace

void SBJSON::describe(ClassDescription<SBJSON, SBJsonBase>& c) {
    c.answers<static_cast<Ref<NSString> (SBJSON::*)(NSObject*)>(&SBJSON::stringWithObject)>("stringWithObject:");
    c.answers<static_cast<Ref<NSObject> (SBJSON::*)(const NSString*)>(&SBJSON::objectWithString)>("objectWithString:");
    c.key<&SBJSON::humanReadable, &SBJSON::setHumanReadable>("humanReadable");
    c.key<&SBJSON::sortKeys, &SBJSON::setSortKeys>("sortKeys");
    c.key<&SBJSON::maxDepth, &SBJSON::setMaxDepth>("maxDepth");
}

SBJSON::SBJSON() : jsonParser(make<SBJsonParser>()), jsonWriter(make<SBJsonWriter>()) {
    SBJSON::setMaxDepth(usualDepth);
}

SBJSON::~SBJSON() = default;

void SBJSON::takeErrorsOf(const SBJsonBase& failed, Ref<NSError>* error) {
    const Ref<NSArray> errors = failed.errorTrace();
    // A value that offers nothing to write can fail without an error.
    errorTrace_ = errors ? NSMutableArray::arrayWithArray(errors) : Ref<NSMutableArray>();
    if (error) *error = errors ? as<NSError>(errors->lastObject()) : nullptr;
}

Ref<NSString> SBJSON::stringWithObject(NSObject* value) { return stringWithObject_error(value, nullptr); }

Ref<NSString> SBJSON::stringWithObject_allowScalar_error(NSObject* value, BOOL allowScalar, Ref<NSError>* error) {
    const Ref<SBJsonWriter> writer = jsonWriter;
    Ref<NSString> text = allowScalar ? writer->stringWithFragment(value) : writer->stringWithObject(value);
    if (!text) takeErrorsOf(*writer, error);
    return text;
}

Ref<NSString> SBJSON::stringWithFragment_error(NSObject* value, Ref<NSError>* error) {
    return stringWithObject_allowScalar_error(value, YES, error);
}

Ref<NSString> SBJSON::stringWithObject_error(NSObject* value, Ref<NSError>* error) {
    return stringWithObject_allowScalar_error(value, NO, error);
}

Ref<NSObject> SBJSON::objectWithString(const NSString* text) { return objectWithString_error(text, nullptr); }

Ref<NSObject> SBJSON::objectWithString_allowScalar_error(const NSString* text, BOOL allowScalar, Ref<NSError>* error) {
    const Ref<SBJsonParser> parser = jsonParser;
    Ref<NSObject> value = allowScalar ? parser->fragmentWithString(text) : parser->objectWithString(text);
    if (!value) takeErrorsOf(*parser, error);
    return value;
}

Ref<NSObject> SBJSON::fragmentWithString_error(const NSString* text, Ref<NSError>* error) {
    return objectWithString_allowScalar_error(text, YES, error);
}

Ref<NSObject> SBJSON::objectWithString_error(const NSString* text, Ref<NSError>* error) {
    return objectWithString_allowScalar_error(text, NO, error);
}

NSUInteger SBJSON::maxDepth() const { return jsonParser->maxDepth(); }

void SBJSON::setMaxDepth(NSUInteger depth) {
    jsonParser->setMaxDepth(depth);
    jsonWriter->setMaxDepth(depth);
}

BOOL SBJSON::humanReadable() const { return jsonWriter->humanReadable(); }
void SBJSON::setHumanReadable(BOOL readable) { jsonWriter->setHumanReadable(readable); }
BOOL SBJSON::sortKeys() const { return jsonWriter->sortKeys(); }
void SBJSON::setSortKeys(BOOL sorted) { jsonWriter->setSortKeys(sorted); }

} // namespace libvue
