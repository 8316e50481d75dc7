// A notch of the wheel on its way: to the digits, over the wire to the chip, to the loudspeaker.
#include <QApplication>
#include <memory>
#include <stdexcept>

#include "Rows.h"
#include "core/FrameRig.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {
namespace {

constexpr char kDigit[] = "lbl7Seg(3)";  // 100 kHz: from the broadcaster to an empty place, and back
constexpr int kPhases = 12;              // of the block that is under way when the gesture comes

struct Ear final : SampleSink {
  void Accept(const std::int16_t* samples, int count) override {
    Heard.insert(Heard.end(), samples, samples + count);
  }
  std::vector<std::int16_t> Heard;
};

struct TunedRadio : test::FrameRig {
  explicit TunedRadio(const std::string& settings, int model = 0)
      : FrameRig(
            "[VFO1.ElektorDRM]\nTunedFrequency=72050000\n[DDSAD9835]\nClkIn=50000000\n[frmMain]\n"
            "AutoStartSDR=True\nCurrentPlaybackDevice=3\nSDRModelNo=" +
                std::to_string(model) + "\n" + settings,
            model) {
    Sound.AddPlaybackDevice("Ear", &Listener);
    KeepAudio = false;
    if (!Start()) throw std::runtime_error("the radio does not start");
    Run(1.5);
  }
  ~TunedRadio() override { Stop(); }
  Ear Listener;
};

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Changes of a line until the chip has the new frequency: what the port's own time is multiplied with.
double OnTheWire(TunedRadio& radio) {
  const std::int64_t before = radio.Oscillator();
  radio.Serial.SetRecording(true);
  radio.Printer.SetRecording(true);
  radio.Wheel(kDigit, 1);
  if (radio.Oscillator() == before) throw std::runtime_error("the wheel tunes nothing");
  return static_cast<double>(radio.Serial.Levels().size() + radio.Printer.Levels().size());
}

// Paint events of all windows.
struct Paints final : QObject {
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    Count += event->type() == QEvent::Paint;
    return false;
  }
  int Count = 0;
};

// Milliseconds until the loudspeaker plays another sample than that of a radio that nobody touches.
double ToTheEar(const std::string& settings, int phase) {
  TunedRadio touched(settings), left(settings);
  for (TunedRadio* radio : {&touched, &left}) radio->Run(phase * 0.0427 / kPhases);
  const std::size_t begin = touched.Listener.Heard.size();
  touched.Wheel(kDigit, 1);
  for (TunedRadio* radio : {&touched, &left}) radio->Run(1.0);
  const std::vector<std::int16_t>&one = touched.Listener.Heard, &other = left.Listener.Heard;
  std::size_t at = begin;
  while (at < std::min(one.size(), other.size()) && one[at] == other[at]) ++at;
  return 1000.0 * static_cast<double>(at - begin) / FSampling;
}

double MedianToTheEar(const std::string& settings) {
  std::vector<double> times;
  for (int phase = 0; phase < kPhases; ++phase) times.push_back(ToTheEar(settings, phase));
  return Median(times);
}

// Processor time of the gesture and of what the window paints for it.
double ToTheDigits() {
  TunedRadio radio("");
  radio.Click("optPwr(1)");
  PanelWindow window(radio.Frame().Controls(), PanelWindow::Events{});
  window.show();
  QApplication::processEvents();
  Paints paints;
  QApplication::instance()->installEventFilter(&paints);
  int way = 1, gestures = 0;
  const double time = MillisecondsOf([&] {
    radio.Wheel(kDigit, way = -way);
    window.Clock().Flush();
    QApplication::processEvents();
    ++gestures;
  });
  if (paints.Count < gestures) throw std::runtime_error("the digits are not painted");
  return time;
}

}  // namespace

std::vector<Row> MeasureTuning() {
  TunedRadio drt1(""), elektor("", 1), printer("VFO1.IFType=1\n", 1);
  return {{"Tuning", "a notch of the wheel until its digits are painted", ToTheDigits(), "ms", 5.0},
          {"Tuning", "lines changed on the serial port for an AD9951", OnTheWire(drt1), ""},
          {"Tuning", "lines changed on the serial port for an AD9835", OnTheWire(elektor), ""},
          {"Tuning", "bytes on the printer port for an AD9835", OnTheWire(printer), ""},
          {"Tuning", "until the loudspeaker plays it", MedianToTheEar(""), "ms", 400.0},
          {"Tuning", "the same with ShortDelay", MedianToTheEar("ShortDelay=True\n"), "ms", 230.0}};
}

}  // namespace quorl
