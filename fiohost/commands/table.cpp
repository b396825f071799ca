#include <array>

#include "fiohost/commands/command.h"

namespace fiohost {
namespace {

constexpr std::array commands = {
    CommandEntry{"completion", "print what a shell completes commands by", &makeCompletionCommand},
    CommandEntry{"convert", "save pictures anew with other options", &makeConvertCommand},
    CommandEntry{"formats", "tell the formats that the plug-in serves", &makeFormatsCommand},
    CommandEntry{"heap", "list or set the values of a camera-data heap", &makeHeapCommand},
    CommandEntry{"info", "describe pictures", &makeInfoCommand},
    CommandEntry{"man", "print the manual page", &makeManCommand},
    CommandEntry{"mpo", "look into, take apart, build or change multi-picture files",
                 &makeMpoCommand},
    CommandEntry{"properties", "list or extract what is known beside the picture",
                 &makePropertiesCommand},
    CommandEntry{"read", "decode a picture into a PNG, BMP or PPM file", &makeReadCommand},
    CommandEntry{"set", "set EXIF, GPS and IPTC values", &makeSetCommand},
    CommandEntry{"show", "describe pictures and decode each to a PNG in the current folder",
                 &makeShowCommand},
    CommandEntry{"settings", "show or change the save options", &makeSettingsCommand},
    CommandEntry{"strip", "take private data out of pictures", &makeStripCommand},
    CommandEntry{"view", "show pictures in a window (Windows)", &makeViewCommand},
};

}  // namespace

CommandTable commandTable() { return {commands.data(), commands.data() + commands.size()}; }

}  // namespace fiohost
