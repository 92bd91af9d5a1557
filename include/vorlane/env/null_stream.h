// The stream that swallows what is written.

#ifndef ZYL_ENV_NULL_STREAM_H
#define ZYL_ENV_NULL_STREAM_H

#include <ostream>
#include <streambuf>

#include "vorlane/env/export.h"

/// A stream buffer that accepts everything and keeps nothing.
class ZYL_EXPORT ZylPrivateBuf : public std::streambuf {
 public:
  ~ZylPrivateBuf() override;

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
};

/// An output stream on such a buffer, which must outlive it.
class ZYL_EXPORT ZylNullStream : public std::ostream {
 public:
  explicit ZylNullStream(ZylPrivateBuf* buffer) : std::ostream(buffer) {}
  ~ZylNullStream() override;
};

#endif
