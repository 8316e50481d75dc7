#include "recorder/panel/RecordingOptions.h"

#include <bit>
#include <cmath>

#include "state/PublicConstants.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

RecordingOptions::RecordingOptions(const PanelContext& context, clsWavFile& deck)
    : frRecordSampling(context.Registry, "frRecordSampling"),
      frRecordBitsPerSample(context.Registry, "frRecordBitsPerSample"),
      optRecordSampleRate(context.Registry, "optRecordSampleRate",
                          static_cast<int>(RecordSampleRateTexts.size())),
      optRecordSamplePerBit(context.Registry, "optRecordSamplePerBit",
                            static_cast<int>(RecordSampleBitsTexts.size())),
      chkRecordIF(context.Registry, "chkRecordIF"),
      chkKeepTail(context.Registry, "chkKeepTail"),
      chkStayOn(context.Registry, "chkStayOn"),
      lblRecordMBytesPerHr(context.Registry, "lblRecordMBytesPerHr"),
      lblRecordMBytesDesc(context.Registry, "lblRecordMBytesDesc"),
      deck_(deck),
      rx_(context.Rx) {
  frRecordSampling.Caption = "Sample Rate";
  frRecordBitsPerSample.Caption = "Bits/Sample";
  for (int i = 0; i < optRecordSampleRate.Count(); ++i) {
    const std::string text = RecordSampleRateTexts[static_cast<std::size_t>(i)];
    optRecordSampleRate(i).Caption = text;
    optRecordSampleRate(i).ToolTip = FormatPicture(48000 >> i, "#,##0") + " samples a second: up to " +
                                     FormatPicture(24000 >> i, "#,##0 Hz");
    optRecordSampleRate(i).AccessibleName =
        "Sample rate " + FormatPicture(48.0 / (1 << i), "0") + " kilohertz";
  }
  for (int i = 0; i < optRecordSamplePerBit.Count(); ++i) {
    optRecordSamplePerBit(i).Caption = std::string(RecordSampleBitsTexts[static_cast<std::size_t>(i)]);
    optRecordSamplePerBit(i).AccessibleName = optRecordSamplePerBit(i).Caption() + " bits a sample";
  }
  optRecordSamplePerBit(0).ToolTip = "What every sound program plays";
  optRecordSamplePerBit(1).ToolTip = "As large as with 16 bits, and other programs play it as noise";
  chkRecordIF.Caption = "IF";
  chkRecordIF.ToolTip =
      "Records what the board delivers, 48,000 a second: to be tuned within, filtered and "
      "demodulated when it is played";
  chkRecordIF.AccessibleName = "Record the IF";
  chkKeepTail.Caption = "Tail";
  chkKeepTail.ToolTip = "Keeps the last seconds, which don't fill a write to the disk";
  chkKeepTail.AccessibleName = "Keep the tail of a recording";
  chkStayOn.Caption = "Stay on";
  chkStayOn.ToolTip = "Switches the radio on again after Stop";
  lblRecordMBytesDesc.Caption = "MB/Hr";
  lblRecordMBytesPerHr.AccessibleName = "Megabytes an hour";
  optRecordSampleRate.Click = [this](int index) { optRecordSampleRate_Click(index); };
  optRecordSamplePerBit.Click = [this](int index) { optRecordSamplePerBit_Click(index); };
  BindToggle(chkRecordIF, [this] { chkRecordIF_Click(); });
  BindToggle(chkKeepTail, [this] { deck_.KeepTail = chkKeepTail.Value(); });
  BindToggle(chkStayOn, [] {});
  Show();
}

void RecordingOptions::optRecordSampleRate_Click(int index) {
  if (showing_) return;
  if (deck_.IsClosed()) deck_.SetDecimator(1 << index);
  Show();
  Changed();
}

void RecordingOptions::optRecordSamplePerBit_Click(int index) {
  if (showing_) return;
  if (deck_.IsClosed()) deck_.BitsPerSample = index == 1 ? 8 : 16;
  Show();
}

void RecordingOptions::chkRecordIF_Click() {
  if (showing_) return;
  if (deck_.IsClosed()) deck_.RecordIF = chkRecordIF.Value();
  Show();
  Changed();
}

std::int64_t RecordingOptions::BytesPerHour() const {
  constexpr std::int64_t kBytes = 7200;  // two a sample, 3600 seconds
  if (!deck_.RecordIF || deck_.HasFile()) return deck_.WavSamplingRate() * kBytes;
  return deck_.SamplingRate * kBytes * (rx_.Vars.SDRModelNo == SDRModel::IQXtalRX ? 2 : 1);
}

void RecordingOptions::Show() {
  const ScopedFlag showing(showing_);
  const int rate = std::countr_zero(static_cast<std::uint32_t>(deck_.Decimator()));
  const int bits = (deck_.HasFile() ? deck_.Playing().Bits : deck_.BitsPerSample) == 8 ? 1 : 0;
  optRecordSampleRate.Press(rate);
  optRecordSamplePerBit.Press(bits);
  PaintButtons(optRecordSampleRate, rate);
  PaintButtons(optRecordSamplePerBit, bits);
  chkRecordIF.SetValue(deck_.HasFile() ? deck_.Playing().IF.has_value() : deck_.RecordIF);
  chkKeepTail.SetValue(deck_.KeepTail);
  const bool fixed = !deck_.IsClosed();
  Fade(optRecordSampleRate, fixed || deck_.RecordIF);
  Fade(optRecordSamplePerBit, fixed || deck_.RecordIF);
  chkRecordIF.Faded = fixed;
  frRecordSampling.Faded = frRecordBitsPerSample.Faded = fixed;
  constexpr double kMegabyte = 1 << 20;
  lblRecordMBytesPerHr.Caption = FormatPicture(std::floor(double(BytesPerHour()) / kMegabyte + 0.5), "0");
}

void RecordingOptions::AddSettings(SettingsTable& table) {
  table.Add<bool>(
      "StayOn", [this] { return chkStayOn.Value(); }, [this](bool on) { chkStayOn.SetValue(on); });
  table.Add("KeepTail", deck_.KeepTail);
  table.Add("RecordIF", deck_.RecordIF);
}

}  // namespace quorl
