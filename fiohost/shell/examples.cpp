#include "fiohost/shell/examples.h"

#include <algorithm>
#include <iterator>

namespace fiohost {
namespace {

// Those of one command stand together.
constexpr Example examples[] = {
    {"", "fiohost info picture.jpg", "tells what a picture is"},
    {"", "fiohost convert in.jpg -o out.jpg --quality 90", "saves it anew"},
    {"", "fiohost convert --help", "tells the rest about a command"},
    {"completion", "fiohost completion bash", "prints what bash completes commands by"},
    {"completion", "fiohost completion powershell", "the same for PowerShell"},
    {"convert", "fiohost convert in.jpg -o out.jpg --quality 90", "saves a picture anew"},
    {"convert", "fiohost convert pair.mpo -o new.mpo --keep-images",
     "saves the first image anew and keeps the others as they are"},
    {"convert", "fiohost convert a.jpg b.jpg -o folder --progressive", "saves several pictures"},
    {"formats", "fiohost formats", "tells the formats that the plug-in serves"},
    {"heap", "fiohost heap in.jpg", "lists the camera data"},
    {"heap", "fiohost heap in.jpg --set \"Owner name=A. Nother\" -o out.jpg", "changes a value"},
    {"info", "fiohost info a.jpg b.mpo", "describes pictures"},
    {"info", "fiohost info a.jpg --json", "the same for programs"},
    {"man", "fiohost man", "prints the manual page"},
    {"mpo", "fiohost mpo info pair.mpo", "lists the images of a file"},
    {"mpo", "fiohost mpo swap pair.mpo -o swapped.mpo", "lets left and right change places"},
    {"mpo build", "fiohost mpo build left.jpg right.jpg --kind stereo -o pair.mpo",
     "makes a stereo picture"},
    {"mpo extract", "fiohost mpo extract pair.mpo -o folder --jpeg",
     "takes the JPEG streams out as they are"},
    {"mpo extract", "fiohost mpo extract pair.mpo -o folder --images 2",
     "decodes the second image to a PNG"},
    {"mpo info", "fiohost mpo info pair.mpo", "lists every image with its attributes"},
    {"mpo insert", "fiohost mpo insert pair.mpo third.jpg --at 2 -o three.mpo",
     "puts a picture between two"},
    {"mpo remove", "fiohost mpo remove three.mpo --images 2 -o pair.mpo", "leaves an image out"},
    {"mpo reorder", "fiohost mpo reorder three.mpo --order 3,1,2 -o new.mpo",
     "puts the last image in front"},
    {"mpo repair", "fiohost mpo repair stale.mpo -o right.mpo", "writes a right index"},
    {"mpo swap", "fiohost mpo swap pair.mpo -o pair.mpo --force",
     "lets the two of a pair change places, in the same file"},
    {"mpo verify", "fiohost mpo verify a.mpo b.mpo", "names what is wrong with their indexes"},
    {"properties", "fiohost properties in.jpg", "lists what a file knows, as people read it"},
    {"properties", "fiohost properties in.jpg --extract xmp -o in.xmp", "takes the XMP packet out"},
    {"read", "fiohost read in.jpg -o out.png", "decodes a picture"},
    {"read", "fiohost read in.jpg -o small.png --fit 800x600", "decodes it smaller"},
    {"set", "fiohost set in.jpg FNumber=5.6 \"Artist=A. Nother\" -o out.jpg", "sets two values"},
    {"set", "fiohost set in.jpg Keywords=sea Keywords=ships -o out.jpg", "sets two keywords"},
    {"settings", "fiohost settings", "shows the save options"},
    {"settings", "fiohost settings Quality=90 Mode=progressive", "changes two of them"},
    {"show", "fiohost show in.jpg", "describes a picture and decodes it to a PNG"},
    {"strip", "fiohost strip in.jpg --gps -o out.jpg", "takes out where it was taken"},
    {"strip", "fiohost strip a.jpg b.jpg --all --in-place", "leaves nothing but the pictures"},
    {"view", "fiohost view in.jpg", "shows a picture, and those beside it, in a window"},
    {"view", "fiohost view pair.mpo", "shows a stereo picture"},
};

}  // namespace

std::span<const Example> examplesOf(const std::string& command) {
  const auto isOurs = [&](const Example& example) { return command == example.command; };
  const auto first = std::find_if(std::begin(examples), std::end(examples), isOurs);
  const auto last = std::find_if_not(first, std::end(examples), isOurs);
  return {first, last};
}

}  // namespace fiohost
