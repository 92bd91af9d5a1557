#include "vorlane/env/null_stream.h"

ZylPrivateBuf::~ZylPrivateBuf() = default;

ZylPrivateBuf::int_type ZylPrivateBuf::overflow(int_type c) { return traits_type::not_eof(c); }
std::streamsize ZylPrivateBuf::xsputn(const char*, std::streamsize count) { return count; }

ZylNullStream::~ZylNullStream() = default;
