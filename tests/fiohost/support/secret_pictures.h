// Pictures that tell a place, the word "SECRET", in everything that can tell one.
#pragma once

#include <cstdio>

#include "tests/support/jpeg_builder.h"
#include "tests/support/tiff_builder.h"

namespace fiohostTest {

using support::bytesOf;
using support::joined;
using support::JpegBuilder;
using support::TiffBuilder;

inline constexpr std::uint16_t gpsMapDatum = 0x0012;
inline constexpr std::uint16_t gpsLatitude = 0x0002;

inline support::Bytes secretXmp() {
  return bytesOf(
      "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
      "xmlns:exif='http://ns.adobe.com/exif/1.0/' xmlns:dc='http://purl.org/dc/elements/1.1/' "
      "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' "
      "xmlns:drone='http://www.dji.com/drone-dji/1.0/' "
      "xmlns:Iptc4xmpExt='http://iptc.org/std/Iptc4xmpExt/2008-02-29/' rdf:about='' "
      "exif:GPSLatitude=\"SECRET > 1\" photoshop:City='SECRET' drone:GpsLatitude = 'SECRET' "
      "dc:format='open'><exif:GPSLongitude>SECRET</exif:GPSLongitude>"
      "<Iptc4xmpExt:LocationCreated><rdf:Bag><rdf:li rdf:parseType='Resource'>"
      "<Iptc4xmpExt:City>SECRET</Iptc4xmpExt:City></rdf:li></rdf:Bag>"
      "</Iptc4xmpExt:LocationCreated><exif:GPSAltitude a='SECRET'/><dc:title>open</dc:title>"
      "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>");
}

inline support::Bytes dataset(std::uint8_t number, const std::string& text) {
  return joined({0x1C, 2, number, 0, static_cast<std::uint8_t>(text.size())}, bytesOf(text));
}

inline support::Bytes secretDatasets() {
  support::Bytes all;
  for (const int number : {5, 26, 27, 90, 92, 95, 100, 101}) {
    all = joined(all, dataset(static_cast<std::uint8_t>(number), number == 5 ? "open" : "SECRET"));
  }
  return joined(all, dataset(120, "caption"));
}

inline support::Bytes secretResources() {
  const support::Bytes datasets = secretDatasets();
  const support::Bytes head = {'8', 'B', 'I', 'M', 4, 4,
                               0,   0,   0,   0,   0, static_cast<std::uint8_t>(datasets.size())};
  support::Bytes all = joined(head, datasets);
  if (all.size() % 2 != 0) all.push_back(0);
  return joined(all, {'8', 'B', 'I', 'M', 4, 0x0A, 0, 0, 0, 0, 0, 1, 1, 0});
}

inline support::Bytes secretExif(support::ByteOrder order, const support::Bytes& thumbnail) {
  TiffBuilder tiff(order);
  tiff.ifd0().text(support::tag::make, "Open Maker").shorts(support::tag::orientation, {6});
  tiff.exif().undefined(support::tag::makerNote, bytesOf("a maker's note"));
  tiff.gps().rationals(gpsLatitude, {{0x53454352, 1}, {2, 1}, {3, 1}}).text(gpsMapDatum, "SECRET");
  if (!thumbnail.empty()) tiff.thumbnail(thumbnail);
  return tiff.build();
}

// number tells pictures of one file from each other.
inline support::Bytes secretPicture(unsigned number, support::ByteOrder order) {
  const support::Bytes inner = JpegBuilder()
                                   .size(16, 16)
                                   .exif(secretExif(support::ByteOrder::big, {}))
                                   .xmp(secretXmp())
                                   .photoshop(secretResources())
                                   .build();
  return JpegBuilder()
      .size(24 + 8 * number, 16)
      .exif(secretExif(order, inner))
      .xmp(secretXmp())
      .photoshop(secretResources())
      .icc(1, 1, bytesOf("a colour profile"))
      .comment(bytesOf("a comment"))
      .app(6, joined(bytesOf("GoPro"), joined({0}, bytesOf("GPS5 SECRET"))))
      .build();
}

}  // namespace fiohostTest
