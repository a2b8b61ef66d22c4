#pragma once

namespace libvue {

class SBJSON;
class SBJsonBase;
class SBJsonParser;
class SBJsonParserProtocol;
class SBJsonWriter;
class SBJsonWriterProtocol;

} // namespace libvue
