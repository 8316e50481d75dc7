#include "shared/Version.h"

#include <RtAudio.h>
#include <alsa/asoundlib.h>
#include <png.h>
#include <samplerate.h>
#include <sndfile.h>

#include <CLI/Version.hpp>
#include <nlohmann/json.hpp>

#include "Commit.h"

namespace quorl {
namespace {

// Of the likes of "libsamplerate-0.2.2 (c) 2002": name and number with a space between.
std::string NameAndNumber(std::string text) {
  text = text.substr(0, text.find(' '));
  const std::size_t dash = text.find('-');
  if (dash != std::string::npos) text[dash] = ' ';
  return text;
}

std::string JsonNumber() {
  return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + "." + std::to_string(NLOHMANN_JSON_VERSION_MINOR) +
         "." + std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

}  // namespace

const char* ProgramVersion() {
  return QUORL_VERSION;
}

std::string VersionText(const std::string& program, const std::string& toolkit) {
  const std::string commit = kCommit;
  return program + " " + ProgramVersion() +
         "\ncommit: " + (commit.empty() ? "not known, built from sources without their history" : commit) +
         "\nlibraries: " + toolkit + (toolkit.empty() ? "" : ", ") + "RtAudio " + RtAudio::getVersion() +
         ", ALSA " + snd_asoundlib_version() + ", " + NameAndNumber(sf_version_string()) + ", " +
         NameAndNumber(src_get_version()) + ", libpng " + png_get_libpng_ver(nullptr) + ", CLI11 " +
         CLI11_VERSION + ", nlohmann-json " + JsonNumber();
}

}  // namespace quorl
