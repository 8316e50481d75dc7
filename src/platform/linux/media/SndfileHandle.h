// Closes a file of libsndfile.
#pragma once

#include <sndfile.h>

#include <memory>

namespace quorl {

struct SndfileCloser {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfileHandle = std::unique_ptr<SNDFILE, SndfileCloser>;

}  // namespace quorl
