#include "platform/linux/media/SndfileSoundFiles.h"

#include "platform/linux/media/SamplerateConverter.h"
#include "platform/linux/media/SndfileReader.h"
#include "platform/linux/media/SndfileWriter.h"

namespace quorl {

std::unique_ptr<SoundFileReader> SndfileSoundFiles::Open(const std::string& path, Failure& failure) const {
  return SndfileReader::Open(files_, path, failure);
}

std::unique_ptr<SoundFileWriter> SndfileSoundFiles::Create(const std::string& path, const SoundFileForm& form,
                                                           Failure& failure) const {
  return SndfileWriter::Create(files_, path, form, failure);
}

std::unique_ptr<RateConverter> SndfileSoundFiles::Convert(int from, int to, Failure& failure) const {
  return SamplerateConverter::Create(from, to, failure);
}

}  // namespace quorl
