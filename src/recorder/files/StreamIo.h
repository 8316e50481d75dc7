// Reading and writing whole stretches of samples on standard streams, with the system's reason for a failure.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "support/Error.h"

namespace quorl {

// `name`: `what`, and why, from the system's last error number (for which EIO stands where there is none).
Error IoError(const std::string& name, const std::string& what);

// Reads up to `bytes` bytes; returns how many came. Fewer without `failure` is the stream's end.
std::int64_t ReadBytes(std::istream& in, void* destination, std::int64_t bytes, const std::string& name,
                       Failure& failure);

// Writes samples in the order of files, whatever the machine's; the stream's state tells how it went.
void WriteSamples(std::ostream& out, const std::int16_t* samples, int count);

}  // namespace quorl
