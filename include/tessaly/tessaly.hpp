// Tessaly: the in-memory model of one ECU diagnostic description, read and written as XML.
// Including this header gives the whole public interface.
#ifndef TESSALY_TESSALY_HPP_
#define TESSALY_TESSALY_HPP_

#include "tessaly/common/collection.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/common/event_log.hpp"
#include "tessaly/common/keyed_collection.hpp"
#include "tessaly/data/byte_string.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/data_liste_items.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/devices/device_data_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/devices/test_items.hpp"
#include "tessaly/facade/function_item.hpp"
#include "tessaly/facade/multi_lang.hpp"
#include "tessaly/facade/reference_tables.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/auto_ident_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/screens/button_items.hpp"
#include "tessaly/screens/category_items.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/display_references.hpp"
#include "tessaly/screens/label_items.hpp"
#include "tessaly/screens/range_items.hpp"
#include "tessaly/screens/scenario_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

#endif  // TESSALY_TESSALY_HPP_
