// What a chip driver asks of the lines that lead to its chip.
#pragma once

#include <cstdint>

namespace quorl {

class DDSInterface {
 public:
  virtual ~DDSInterface() = default;
  // Whether what is sent goes anywhere, as far as that can be told.
  virtual bool IsOpen() const = 0;
  // IO update or frame select: states below 1 are 0, all others 1.
  virtual void IOUPD(int State) = 0;
  // Clocks out eight bits, the highest first. Yields to the event queue inside every bit.
  virtual void Out8(std::uint8_t ByteToSend) = 0;
  // As Out8. 0, or 1 where the lines are not open and nothing was sent.
  virtual int Send(std::uint8_t ByteToSend) = 0;
};

}  // namespace quorl
