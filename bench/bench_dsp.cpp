// Cost of the signal path, with FFTW (single precision, its fastest plan) measured beside it in the same run.
//
// After Google Benchmark's table come the ratios, for each instruction set that the processor has. Each is
// the median of pairs that are measured in turn, so that what else the machine does falls on both.
#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "DeckWorks.h"
#include "Rows.h"
#include "display/analyser/Smoothing.h"
#include "display/analyser/SpectrumTransform.h"
#include "display/analyser/TraceScale.h"
#include "dsp/kernel/KernelTable.h"
#include "dsp/kernel/VectorKernel.h"
#include "platform/virtual/VirtualClock.h"
#include "receiver/Receiver.h"

namespace quorl {
namespace {

constexpr int kPoints = BlockPoints;

SampleBuffer Noise(std::size_t count) {
  std::mt19937 generator(1);
  std::uniform_real_distribution<float> uniform(-8000.0F, 8000.0F);
  SampleBuffer values(count);
  for (float& v : values) v = uniform(generator);
  return values;
}

// Complex transform of 2048 points over split arrays, as ours.
class FftwComplex {
 public:
  FftwComplex() : in_(2 * kPoints), out_(2 * kPoints) {
    const fftwf_iodim points{kPoints, 1, 1};
    plan_ = fftwf_plan_guru_split_dft(1, &points, 0, nullptr, in_.data(), in_.data() + kPoints, out_.data(),
                                      out_.data() + kPoints, FFTW_PATIENT);
    in_ = Noise(in_.size());
  }
  ~FftwComplex() { fftwf_destroy_plan(plan_); }
  void operator()() { fftwf_execute(plan_); }

 private:
  SampleBuffer in_, out_;
  fftwf_plan plan_;
};

// The same over interleaved pairs, FFTW's home format: the faster of the two is the measure.
class FftwInterleaved {
 public:
  FftwInterleaved() : in_(2 * kPoints), out_(2 * kPoints) {
    plan_ = fftwf_plan_dft_1d(kPoints, reinterpret_cast<fftwf_complex*>(in_.data()),
                              reinterpret_cast<fftwf_complex*>(out_.data()), FFTW_FORWARD, FFTW_PATIENT);
    in_ = Noise(in_.size());
  }
  ~FftwInterleaved() { fftwf_destroy_plan(plan_); }
  void operator()() { fftwf_execute(plan_); }

 private:
  SampleBuffer in_, out_;
  fftwf_plan plan_;
};

// The overlap-add step of a filter block, built on FFTW: real transform, product, inverse, overlap.
class FftwFilter {
 public:
  FftwFilter() : block_(2 * kPoints), tail_(kPoints), spectrum_(2 * kBins), filter_(Noise(2 * kBins)) {
    auto* bins = reinterpret_cast<fftwf_complex*>(spectrum_.data());
    forward_ = fftwf_plan_dft_r2c_1d(2 * kPoints, block_.data(), bins, FFTW_PATIENT);
    back_ = fftwf_plan_dft_c2r_1d(2 * kPoints, bins, block_.data(), FFTW_PATIENT);
    for (float& f : filter_) f /= 8000.0F * 2 * kPoints;
    fresh_ = Noise(kPoints);
  }
  ~FftwFilter() {
    fftwf_destroy_plan(forward_);
    fftwf_destroy_plan(back_);
  }
  void operator()() {
    std::copy(fresh_.begin(), fresh_.end(), block_.begin());
    std::fill(block_.begin() + kPoints, block_.end(), 0.0F);
    fftwf_execute(forward_);
    float* x = spectrum_.data();
    const float* f = filter_.data();
    for (int k = 0; k < kBins; ++k) {
      const float re = x[2 * k] * f[2 * k] - x[2 * k + 1] * f[2 * k + 1];
      x[2 * k + 1] = x[2 * k] * f[2 * k + 1] + x[2 * k + 1] * f[2 * k];
      x[2 * k] = re;
    }
    fftwf_execute(back_);
    for (int k = 0; k < kPoints - 2; ++k) block_[std::size_t(k)] += tail_[std::size_t(k)];
    std::copy_n(block_.begin() + kPoints, kPoints - 2, tail_.begin());
  }

 private:
  static constexpr int kBins = kPoints + 1;
  SampleBuffer block_, tail_, spectrum_, filter_, fresh_;
  fftwf_plan forward_, back_;
};

class OurComplex {
 public:
  OurComplex() : re_(Noise(kPoints)), im_(re_), outRe_(kPoints), outIm_(kPoints) { fft_.FFTInit(kPoints); }
  void operator()() { fft_.FFT_S_2(re_.data(), im_.data(), outRe_.data(), outIm_.data()); }

 private:
  KernelSettings settings_;
  clsFFT fft_{settings_};
  SampleBuffer re_, im_, outRe_, outIm_;
};

class OurFilter {
 public:
  OurFilter() : fresh_(Noise(kPoints)), block_(2 * kPoints) { bank_->Initialise(); }
  void operator()() {
    CopyVector_S(fresh_.data(), block_.data(), kPoints);
    bank_->AFFilter.Filter_FFT_S_1(block_.data());
  }

 private:
  KernelSettings settings_;
  std::unique_ptr<FilterBank> bank_ = std::make_unique<FilterBank>(settings_);
  SampleBuffer fresh_, block_;
};

// Real transform of 2048 points.
class FftwReal {
 public:
  FftwReal() : in_(kPoints), out_(kPoints + 2) {
    plan_ = fftwf_plan_dft_r2c_1d(kPoints, in_.data(), reinterpret_cast<fftwf_complex*>(out_.data()),
                                  FFTW_PATIENT);
    in_ = Noise(in_.size());
  }
  ~FftwReal() { fftwf_destroy_plan(plan_); }
  void operator()() { fftwf_execute(plan_); }

 private:
  SampleBuffer in_, out_;
  fftwf_plan plan_;
};

// A line of the scope: transform, magnitudes, average over eight frames, logarithm.
class OurLine {
 public:
  OurLine() : samples_(Noise(kPoints)), line_(kPoints + 1) {
    transform_.Init();
    smoothing_.Allocate(kPoints);
    smoothing_.SetCount(8);
  }
  void operator()() {
    transform_.Real(samples_.data(), SpectrumWindow::None, line_.data());
    smoothing_.Average(0, line_.data(), kScopeBins);
    ScaleLog({}, 12.0F, {0, kScopeBins - 1, 1}, line_.data());
  }

 private:
  KernelSettings settings_;
  SpectrumTransform transform_{settings_};
  Smoothing smoothing_;
  SampleBuffer samples_, line_;
};

class OurPolar {
 public:
  OurPolar() : re_(Noise(2 * kPoints)), mag_(kPoints), phase_(kPoints) {}
  void operator()() {
    CartToPolar_S_2(re_.data(), re_.data() + kPoints, mag_.data(), phase_.data(), kPoints);
  }

 protected:
  SampleBuffer re_, mag_, phase_;
};

class LibraryPolar : OurPolar {
 public:
  void operator()() {
    for (std::size_t k = 0; k < kPoints; ++k) {
      const float x = re_[k], y = re_[k + kPoints];
      mag_[k] = std::sqrt(x * x + y * y);
      phase_[k] = std::atan2(y, x);
    }
    benchmark::ClobberMemory();
  }
};

// A whole block from 16-bit samples to 16-bit samples, through pump and chain.
class Block {
 public:
  explicit Block(const std::function<void(Receiver&)>& settings) {
    radio_.Initialise();
    settings(radio_);
    radio_.Housekeeping();
    const SampleBuffer noise = Noise(kPoints);
    for (std::size_t k = 0; k < kPoints; ++k) input_[k] = static_cast<std::int16_t>(noise[k]);
  }
  void operator()() {
    CopyVector_16(input_.data(), left_.data(), kPoints);
    radio_.Pump.SoundCard_DataReady(left_.data(), input_.data());
  }

 private:
  VirtualClock clock_;
  NoSoundOutput sound_;
  NoRecorder recorder_;
  Receiver radio_{clock_, sound_, recorder_, [] {}};
  std::array<std::int16_t, kPoints> input_{}, left_{};
};

void AMOnRealIF(Receiver& radio) {
  radio.SetDemodMode(DemodMode::AM);
}
void Heaviest(Receiver& radio) {
  radio.Vars.SDRModelNo = SDRModel::RealToIQRX;
  radio.SetDemodMode(DemodMode::USB);
  radio.SwitchIFFilter(true);
  radio.SetIFFilterMode(IFFilterMode::Track);
  radio.SwitchNotch(true);
  radio.SetDynamicFilter(true);
  radio.SetBFO(150);
}
void HeaviestWithIFNotch(Receiver& radio) {
  Heaviest(radio);
  radio.SetNotchType(NotchTypes::IF);
}

double MedianRatio(const std::function<void()>& a, const std::function<void()>& b) {
  std::vector<double> ratios;
  for (int pair = 0; pair < 31; ++pair) {
    const double first = SecondsOf(a);
    ratios.push_back(first / SecondsOf(b));
  }
  std::nth_element(ratios.begin(), ratios.begin() + 15, ratios.end());
  return ratios[15];
}

// What is measured, as callables that keep their state. One set serves table and ratios.
struct Works {
  OurComplex ourComplex;
  FftwComplex fftwSplit;
  FftwInterleaved fftwInterleaved;
  OurFilter ourFilter;
  FftwFilter fftwFilter;
  FftwReal fftwReal;
  OurLine ourLine;
  OurPolar ourPolar;
  LibraryPolar libraryPolar;
  Block am{AMOnRealIF}, heaviest{Heaviest}, heaviestIFNotch{HeaviestWithIFNotch};
  RecordStep record;
  PlayedBlock played;
};

constexpr const char* kModes[] = {"AM", "USB", "LSB", "DRM", "FM", "BC"};  // by DemodMode
constexpr const char* kModels[] = {"DRT1", "Elektor DRM", "IQ Xtal RX", "Real to IQ RX"};

std::vector<Row> MeasurePath(Works& w, const std::string& group) {
  const auto call = [](auto& work) { return [&work] { work(); }; };
  const auto row = [&](const char* what, auto& ours, auto& peer, double limit, bool atLeast = false) {
    return Row{group, what, MedianRatio(call(ours), call(peer)), "x", limit, atLeast};
  };
  Row complex = row("complex FFT, 2048 points, to FFTW", w.ourComplex, w.fftwSplit, 2.0);
  complex.Value = std::max(complex.Value, MedianRatio(call(w.ourComplex), call(w.fftwInterleaved)));
  return {complex,
          row("filter's step to overlap-add on FFTW", w.ourFilter, w.fftwFilter, 1.5),
          row("line of the scope to FFTW's real transform", w.ourLine, w.fftwReal, 4.0),
          row("std::atan2 and std::sqrt to CartToPolar_S_2", w.libraryPolar, w.ourPolar, 5.0, true),
          row("block of AM on the real IF, in FFTW steps", w.am, w.fftwFilter, 7.0),
          row("recording a block, to a block of AM", w.record, w.am, 0.05),
          row("block that is played, to a block of AM", w.played, w.am, 0.5),
          row("heaviest block, in FFTW steps", w.heaviest, w.fftwFilter, 20.0),
          row("heaviest block, notch on the IF, in FFTW steps", w.heaviestIFNotch, w.fftwFilter, 20.0)};
}

// The bare chain, with nothing switched on.
std::vector<Row> MeasureModes(FftwFilter& step) {
  std::vector<Row> rows;
  for (std::int32_t model = 0; model < static_cast<std::int32_t>(std::size(kModels)); ++model) {
    for (std::int32_t mode = 0; mode < DemodMode::Count; ++mode) {
      Block block([=](Receiver& radio) {
        radio.Vars.SDRModelNo = model;
        radio.SetDemodMode(mode);
      });
      const double ratio = MedianRatio([&block] { block(); }, [&step] { step(); });
      rows.push_back({"Chain, in FFTW steps", std::string(kModels[model]) + ", " + kModes[mode], ratio, "x"});
    }
  }
  return rows;
}

template <typename Work>
void Register(const char* name, Work& work) {
  benchmark::RegisterBenchmark(name, [&work](benchmark::State& state) {
    for (auto _ : state) work();
  });
}

}  // namespace
}  // namespace quorl

// The kernel is chosen once for a process, so that each of the others gets one of its own.
void PrintOtherKernels(const std::string& program) {
  using namespace quorl;
  const KernelChoice choice = RunnableKernels();
  for (int i = choice.Count - 2; i >= 0; --i) {
    setenv(kKernelVariable, choice.Tables[i]->InstructionSet, 1);
    std::fflush(stdout);
    if (std::system(("'" + program + "' --benchmark_filter=none 2>/dev/null").c_str()) == -1) return;
  }
}

int main(int argc, char** argv) {
  using namespace quorl;
  const bool chosen = std::getenv(kKernelVariable) != nullptr;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const auto works = std::make_unique<Works>();
  Register("complex FFT 2048", works->ourComplex);
  Register("complex FFT 2048, FFTW split", works->fftwSplit);
  Register("complex FFT 2048, FFTW interleaved", works->fftwInterleaved);
  Register("Filter_FFT_S_1", works->ourFilter);
  Register("overlap-add step, FFTW", works->fftwFilter);
  Register("line of the scope", works->ourLine);
  Register("real FFT 2048, FFTW", works->fftwReal);
  Register("CartToPolar_S_2, 2048 pairs", works->ourPolar);
  Register("std::atan2 and std::sqrt, 2048 pairs", works->libraryPolar);
  Register("block, AM, real IF", works->am);
  Register("block, heaviest setting", works->heaviest);
  benchmark::RunSpecifiedBenchmarks();
  // Limits hold for the best kernel alone.
  std::vector<Row> path = MeasurePath(*works, std::string("Signal path, ") + KernelInstructionSet());
  if (chosen)
    for (Row& row : path) row.Limit = 0.0;
  const bool kept = Print(path);
  if (chosen) return 0;
  PrintOtherKernels(argv[0]);
  std::vector<Row> rows = MeasureModes(works->fftwFilter);
  for (const auto& more : {MeasureWaterfall(), MeasureMemories(), MeasureRecorder()})
    rows.insert(rows.end(), more.begin(), more.end());
  return Print(rows) && kept ? 0 : 1;
}
