// The whole model held by a target, as text: every property of every object reached from the
// target, read through the public interface, one line per value. Two loads that give the same
// text hold the same model. The text is built from the objects, never from XML, so that a value
// the writer leaves out or a reader drops shows up as a difference. The command line's JSON
// form of the model (src/cli/model_json.*) reads the same properties for users; the tests keep
// their own reading so that the oracle of the round-trip checks does not share the code of a
// product feature, and so that doubles compare bit for bit (written here in hexadecimal).
#ifndef TESSALY_TESTS_RELIABILITY_MODEL_TEXT_HPP_
#define TESSALY_TESTS_RELIABILITY_MODEL_TEXT_HPP_

#include <string>

#include "tessaly/target/target_item.hpp"

namespace tessaly::testing {

std::string ModelText(TargetItem& target);

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_RELIABILITY_MODEL_TEXT_HPP_
