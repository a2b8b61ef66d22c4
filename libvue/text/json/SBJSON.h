#pragma once

#include <libvue/text/json/Forward.h>
#include <libvue/text/json/SBJsonBase.h>
#include <libvue/text/json/SBJsonProtocols.h>

namespace libvue {

/// A reader and a writer of JSON behind one object.
///
/// Where one of them fails its errors become this object's `errorTrace`, and the outermost goes to `error` where one is
/// asked for. The errors of an earlier failure stay until the next one.
class LIBVUE_API SBJSON : public SBJsonBase, public SBJsonParserProtocol, public SBJsonWriterProtocol {
public:
    static void describe(ClassDescription<SBJSON, SBJsonBase>& c);
    SBJSON();
    ~SBJSON() override;

    [[nodiscard]] Ref<NSString> stringWithObject(NSObject* value) override;
    /// `error` may be null, here and below.
    [[nodiscard]] Ref<NSString> stringWithObject_allowScalar_error(NSObject* value, BOOL allowScalar,
                                                                   Ref<NSError>* error);
    [[nodiscard]] Ref<NSString> stringWithFragment_error(NSObject* value, Ref<NSError>* error);
    [[nodiscard]] Ref<NSString> stringWithObject_error(NSObject* value, Ref<NSError>* error);

    [[nodiscard]] Ref<NSObject> objectWithString(const NSString* text) override;
    [[nodiscard]] Ref<NSObject> objectWithString_allowScalar_error(const NSString* text, BOOL allowScalar,
                                                                   Ref<NSError>* error);
    [[nodiscard]] Ref<NSObject> fragmentWithString_error(const NSString* text, Ref<NSError>* error);
    [[nodiscard]] Ref<NSObject> objectWithString_error(const NSString* text, Ref<NSError>* error);

    /// The reader's.
    [[nodiscard]] NSUInteger maxDepth() const override;
    /// Sets the reader's and the writer's.
    void setMaxDepth(NSUInteger depth) override;
    [[nodiscard]] BOOL humanReadable() const override;
    void setHumanReadable(BOOL readable) override;
    [[nodiscard]] BOOL sortKeys() const override;
    void setSortKeys(BOOL sorted) override;

private:
    void takeErrorsOf(const SBJsonBase& failed, Ref<NSError>* error);

    Ref<SBJsonParser> jsonParser;
    Ref<SBJsonWriter> jsonWriter;
};

} // namespace libvue
