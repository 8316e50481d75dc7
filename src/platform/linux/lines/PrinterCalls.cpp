#include "platform/linux/lines/PrinterCalls.h"

#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#if defined(__x86_64__) || defined(__i386__)
#include <sys/io.h>
#endif

namespace quorl {

std::vector<PrinterPortNumber> LinuxPrinterCalls::List() {
  namespace fs = std::filesystem;
  constexpr std::string_view prefix = "parport";
  std::vector<PrinterPortNumber> ports;
  std::error_code error;
  for (fs::directory_iterator entry("/proc/sys/dev/parport", error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    PrinterPortNumber port;
    if (!name.starts_with(prefix)) continue;
    const char* last = name.data() + name.size();
    if (std::from_chars(name.data() + prefix.size(), last, port.Number).ptr != last) continue;
    // Two decimal numbers: the standard registers, then the extended ones.
    std::ifstream file(entry->path() / "base-addr");
    if (file >> port.Address) ports.push_back(port);
  }
  return ports;
}

int LinuxPrinterCalls::OpenPort(int number) {
  return open(("/dev/parport" + std::to_string(number)).c_str(), O_RDWR | O_CLOEXEC);
}

void LinuxPrinterCalls::ClosePort(int file) {
  close(file);
}

bool LinuxPrinterCalls::Claim(int file) {
  return ioctl(file, PPCLAIM) == 0;
}

void LinuxPrinterCalls::Release(int file) {
  ioctl(file, PPRELEASE);
}

bool LinuxPrinterCalls::WriteData(int file, std::uint8_t value) {
  return ioctl(file, PPWDATA, &value) == 0;
}

#if defined(__x86_64__) || defined(__i386__)
bool LinuxPrinterCalls::AllowRaw(std::uint16_t address, bool on) {
  return ioperm(address, 1, on ? 1 : 0) == 0;
}

void LinuxPrinterCalls::WriteRaw(std::uint16_t address, std::uint8_t value) {
  outb(value, address);
}
#else
bool LinuxPrinterCalls::AllowRaw(std::uint16_t, bool) {
  return false;
}

void LinuxPrinterCalls::WriteRaw(std::uint16_t, std::uint8_t) {}
#endif

}  // namespace quorl
