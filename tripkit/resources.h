// Data files compiled into the library (cmake/EmbedResource.cmake).
#pragma once

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "tripkit/json.h"

namespace tripkit::resources {

extern const std::string_view airports;      // resources/airports.json
extern const std::string_view destinations;  // resources/destinations.json
extern const std::string_view climate;       // resources/climate.json

// The theme-park price guides and the Disney events calendar.
extern const std::string_view disneyGuide;     // resources/disney-guide.json
extern const std::string_view universalGuide;  // resources/universal-guide.json
extern const std::string_view disneyEvents;    // resources/disney-events.json

// Typical weather of the reference places.
extern const std::string_view wearClimate;  // resources/wear-climate.json

// Decodes a shipped file; one that does not decode is a broken build, so the
// program ends with the decode error.
template <class T>
T decodeShipped(std::string_view bytes, const std::string& fileName) {
    try {
        return json::decodeDocument<T>(bytes, "resources/" + fileName);
    } catch (const std::exception& e) {
        std::cerr << "fatal: shipped " << fileName << " does not decode: " << e.what() << "\n";
        std::abort();
    }
}

}  // namespace tripkit::resources
