// The sample ECU documents of this folder, built through the library's public API: a petrol
// engine control unit reached over the K line with KWP2000 fast initialisation, and the same
// unit reached over CAN (DiagOnCAN, 29-bit identifiers).
//
// The content is fixed: the same program always writes the same bytes, and the documents it
// writes load without any element being dropped or repaired.
#ifndef TESSALY_EXAMPLES_SAMPLE_ECU_HPP_
#define TESSALY_EXAMPLES_SAMPLE_ECU_HPP_

#include <memory>
#include <string>

namespace tessaly {
class TessalyLibXml;
class TargetItem;
}  // namespace tessaly

namespace tessaly::examples {

enum class SampleLine {
  kKLine,  // KWP2000 fast init, mono-point, 10400 baud (engine-ecu.xml)
  kCan,    // DiagOnCAN, 500 kbit/s, extended identifiers (engine-ecu-can.xml)
};

// The file name of the sample for `line`, relative to the examples folder.
std::string SampleFileName(SampleLine line);

// Makes the sample ECU the active target of `facade`. The facade's functions table receives
// the ECU's function (with its CAN identifiers for the CAN line).
std::shared_ptr<TargetItem> BuildSampleEcu(TessalyLibXml& facade, SampleLine line);

// The sample document for `line`, exactly as the library writes it with default settings.
std::string SampleDocument(SampleLine line);

}  // namespace tessaly::examples

#endif  // TESSALY_EXAMPLES_SAMPLE_ECU_HPP_
