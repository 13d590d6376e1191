// quorvane gradient: the painter's bands, as numbers or as a picture.

#include <array>
#include <fstream>
#include <sstream>
#include <string>

#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/file_name.h"
#include "programs/quorvane/png.h"
#include "ui/modDrawGradient.h"

namespace quorvane::programs {
namespace gradient_family {
namespace {

constexpr const char* kDetails =
    R"(Paints the ramp of a surface of WIDTH by HEIGHT twips (15 are a pixel) between
two colours.)";

constexpr std::array kOptions{
    Option{"--start", "R,G,B", "the colour at the start, each channel 0 to 255 (196,219,249)", 's'},
    Option{"--end", "R,G,B", "the colour that the ramp leads to (255,255,255)", 'e'},
    Option{"--direction", "0|1", "0: from left to right; 1: from top to bottom (1)", 'd'},
    Option{"--picture", "FILE",
           "paints into a picture in memory and writes it as PNG, to standard "
           "output for -; what the painter leaves out is grey. Sizes from 15 "
           "to 32767 only",
           'p'},
    Option{"--bands", nullptr, "prints one line for each band: left top right bottom r g b", 'b'},
};

constexpr Colour kGrey = 0xC8C8C8;
constexpr std::int32_t kLargestPicture = 32767;

Colour Rgb(std::int32_t red, std::int32_t green, std::int32_t blue) {
  return red + 256 * green + 65536 * blue;
}

Colour ParseColour(const std::string& words, const std::string& what) {
  std::array<std::int32_t, 3> channels{};
  std::istringstream stream(words);
  std::string word;
  for (std::int32_t& channel : channels) {
    if (!std::getline(stream, word, ',')) break;
    channel = ParseInteger(word, what, 0, 255);
  }
  // With fewer, the last reading has failed; with more, the end is not reached.
  if (!stream || !stream.eof())
    throw UsageError(what + " wants three channels, R,G,B: '" + words + "'");
  return Rgb(channels[0], channels[1], channels[2]);
}

struct Ramp {
  explicit Ramp(const Arguments& arguments)
      : width(ParseInteger(arguments.Operands()[0], "WIDTH")),
        height(ParseInteger(arguments.Operands()[1], "HEIGHT")) {
    if (const auto value = arguments.Value("--start")) start = ParseColour(*value, "--start");
    if (const auto value = arguments.Value("--end")) end = ParseColour(*value, "--end");
    if (const auto value = arguments.Value("--direction")) {
      direction = static_cast<std::int16_t>(ParseInteger(*value, "--direction", -32768, 32767));
    }
  }

  void Paint(DeviceContext hDC, Gdi32& gdi = gdi32()) const {
    modDrawGradient::DrawGradient(hDC, width, height, start, end, direction, gdi);
  }

  std::int32_t width;
  std::int32_t height;
  Colour start = Rgb(196, 219, 249);
  Colour end = Rgb(255, 255, 255);
  std::int16_t direction = 1;
};

// Prints the bands instead of painting them.
class BandPrinter final : public Gdi32 {
 public:
  explicit BandPrinter(Console& console) : console_(console) {}

  Brush CreateSolidBrush(Colour colour) override {
    colour_ = colour;
    return Brush{1};
  }

  std::int32_t FillRect(DeviceContext /*hDC*/, const Rect& band, Brush /*brush*/) override {
    std::ostringstream line;
    line << band.Left << ' ' << band.Top << ' ' << band.Right << ' ' << band.Bottom << ' '
         << (colour_ & 255) << ' ' << ((colour_ >> 8) & 255) << ' ' << ((colour_ >> 16) & 255);
    console_.Out(line.str() + "\n");
    return 1;
  }

  std::int32_t DeleteObject(Brush /*brush*/) override { return 1; }

 private:
  Console& console_;
  Colour colour_ = 0;
};

std::int32_t PixelsFor(std::int32_t twips) {
  if (twips < Picture::kTwipsPerPixel || twips > kLargestPicture) {
    throw UsageError("a picture wants sizes from 15 to " + std::to_string(kLargestPicture));
  }
  return twips / Picture::kTwipsPerPixel;
}

void WriteFile(const std::string& name, const std::string& bytes) {
  std::ofstream out(PathOf(name), std::ios::binary | std::ios::trunc);
  out << bytes;
  out.close();
  if (!out) throw StreamError("the picture cannot be written: " + name);
}

void WritePicture(const Ramp& ramp, const std::string& file, Console& console) {
  const auto picture = makePicture(PixelsFor(ramp.width), PixelsFor(ramp.height), kGrey);
  ramp.Paint(picture->hDC());
  const std::string bytes = PngOf(*picture);
  if (file == "-") {
    console.Out(bytes);
  } else {
    WriteFile(file, bytes);
  }
}

int Gradient(const Arguments& arguments, Console& console) {
  const Ramp ramp(arguments);
  const auto file = arguments.Value("--picture");
  const bool bands = arguments.Has("--bands");
  if (!file && !bands) throw UsageError("--picture FILE or --bands is wanted");
  if (file == "-" && bands) throw UsageError("--picture - and --bands would mix on the output");
  if (file == "-" && console.OutputIsTerminal())
    throw UsageError("--picture - wants a file or a pipe for the output, not a terminal");
  if (file) WritePicture(ramp, *file, console);
  if (bands) {
    BandPrinter printer(console);
    ramp.Paint(DeviceContext{}, printer);
  }
  return ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"gradient", "WIDTH HEIGHT", "a two-colour ramp, as a picture or band by band", kDetails,
            kOptions, Gradient},
};

}  // namespace
}  // namespace gradient_family

std::span<const Command> GradientCommands() { return gradient_family::kCommands; }

}  // namespace quorvane::programs
