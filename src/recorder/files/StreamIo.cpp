#include "recorder/files/StreamIo.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <ios>
#include <system_error>

#include "recorder/files/LittleEndian.h"

namespace quorl {

Error IoError(const std::string& name, const std::string& what) {
  const int code = errno != 0 ? errno : EIO;
  return {code, name + ": " + what + ": " + std::generic_category().message(code)};
}

std::int64_t ReadBytes(std::istream& in, void* destination, std::int64_t bytes, const std::string& name,
                       Failure& failure) {
  errno = 0;
  in.read(static_cast<char*>(destination), static_cast<std::streamsize>(bytes));
  if (in.bad()) failure = IoError(name, "can't be read");
  return in.gcount();
}

void WriteSamples(std::ostream& out, const std::int16_t* samples, int count) {
  if constexpr (std::endian::native == std::endian::little) {
    out.write(reinterpret_cast<const char*>(samples), static_cast<std::streamsize>(count) * 2);
  } else {
    std::array<std::int16_t, 1024> part;
    for (int done = 0; done < count;) {
      const int n = std::min(count - done, static_cast<int>(part.size()));
      std::copy_n(samples + done, n, part.begin());
      SwapFileOrder(part.data(), static_cast<std::size_t>(n));
      out.write(reinterpret_cast<const char*>(part.data()), static_cast<std::streamsize>(n) * 2);
      done += n;
    }
  }
}

}  // namespace quorl
