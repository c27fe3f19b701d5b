// ImgScan: scans one page through SANE into a bitmap file.
//
//   extern "C" bool ScanImage(const char* fileName)
//
// Scans from the device named by the IMGSCAN_DEVICE environment variable, else by "device=" in
// ImgScan.conf beside the module, else from the first device SANE finds; writes the page to
// fileName as a 24-bit bitmap. Returns false when there is no device or the scan fails (the
// reason goes to standard error). Other "name=value" lines of ImgScan.conf set the device's
// options of that name before the scan (mode=Color, resolution=150 …).
#include <sane/sane.h>
#include <sane/saneopts.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

void say(const std::string& text) {
    std::fprintf(stderr, "ImgScan: %s\n", text.c_str());
}

std::string trim(const std::string& s) {
    const auto b = s.find_first_not_of(" \t\r\n");
    if (b == std::string::npos) return {};
    const auto e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

// The settings of ImgScan.conf in the module's folder: name=value lines, "#" comments.
std::vector<std::pair<std::string, std::string>> readSettings() {
    std::vector<std::pair<std::string, std::string>> settings;
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&readSettings), &info) || !info.dli_fname) return settings;
    std::string path = info.dli_fname;
    const auto slash = path.rfind('/');
    path = (slash == std::string::npos ? std::string() : path.substr(0, slash + 1)) + "ImgScan.conf";
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        line = trim(line);
        if (line.empty() || line[0] == '#') continue;
        const auto eq = line.find('=');
        if (eq == std::string::npos) continue;
        settings.emplace_back(trim(line.substr(0, eq)), trim(line.substr(eq + 1)));
    }
    return settings;
}

// Sets a device option by name from text; unknown options and values are reported and skipped.
void setOption(SANE_Handle h, const std::string& name, const std::string& value) {
    for (SANE_Int i = 1;; ++i) {
        const SANE_Option_Descriptor* d = sane_get_option_descriptor(h, i);
        if (!d) break;
        if (!d->name || name != d->name) continue;
        if (!SANE_OPTION_IS_SETTABLE(d->cap) || !SANE_OPTION_IS_ACTIVE(d->cap)) break;
        SANE_Status st = SANE_STATUS_INVAL;
        SANE_Int info = 0;
        if (d->type == SANE_TYPE_STRING) {
            std::vector<char> buf(std::max<size_t>(size_t(d->size), value.size() + 1), 0);
            std::memcpy(buf.data(), value.c_str(), value.size());
            st = sane_control_option(h, i, SANE_ACTION_SET_VALUE, buf.data(), &info);
        } else if (d->type == SANE_TYPE_INT || d->type == SANE_TYPE_BOOL) {
            SANE_Word w = SANE_Word(std::atoi(value.c_str()));
            st = sane_control_option(h, i, SANE_ACTION_SET_VALUE, &w, &info);
        } else if (d->type == SANE_TYPE_FIXED) {
            SANE_Word w = SANE_FIX(std::atof(value.c_str()));
            st = sane_control_option(h, i, SANE_ACTION_SET_VALUE, &w, &info);
        }
        if (st != SANE_STATUS_GOOD) say("option " + name + "=" + value + ": " + sane_strstatus(st));
        return;
    }
    say("option " + name + " is not offered by the device");
}

// One frame of a scan: its parameters and its bytes.
struct Frame {
    SANE_Parameters p{};
    std::vector<unsigned char> bytes;
};

bool readFrame(SANE_Handle h, Frame& f) {
    SANE_Status st = sane_start(h);
    if (st != SANE_STATUS_GOOD) {
        say(std::string("start: ") + sane_strstatus(st));
        return false;
    }
    st = sane_get_parameters(h, &f.p);
    if (st != SANE_STATUS_GOOD || f.p.bytes_per_line <= 0) {
        say(std::string("parameters: ") + sane_strstatus(st));
        return false;
    }
    std::vector<unsigned char> chunk(64 * 1024);
    for (;;) {
        SANE_Int len = 0;
        st = sane_read(h, chunk.data(), SANE_Int(chunk.size()), &len);
        if (len > 0) f.bytes.insert(f.bytes.end(), chunk.begin(), chunk.begin() + len);
        if (st == SANE_STATUS_EOF) break;
        if (st != SANE_STATUS_GOOD) {
            say(std::string("read: ") + sane_strstatus(st));
            return false;
        }
    }
    if (f.p.lines < 0) f.p.lines = SANE_Int(f.bytes.size() / size_t(f.p.bytes_per_line)); // hand-held
    return f.p.lines > 0 && f.bytes.size() >= size_t(f.p.lines) * size_t(f.p.bytes_per_line);
}

// The sample of channel c (0 for grey) of pixel x in a line, as 8 bits.
unsigned char sample(const unsigned char* line, int x, int c, int channels, int depth) {
    if (depth == 1) return (line[x / 8] & (0x80 >> (x % 8))) ? 0 : 255; // 1 is black
    if (depth == 16) {
        uint16_t v;
        std::memcpy(&v, line + 2 * (x * channels + c), 2); // host byte order
        return static_cast<unsigned char>(v >> 8);
    }
    return line[x * channels + c];
}

void put16(std::vector<unsigned char>& b, uint16_t v) {
    b.push_back(v & 0xff);
    b.push_back(v >> 8);
}

void put32(std::vector<unsigned char>& b, uint32_t v) {
    for (int i = 0; i < 4; ++i) b.push_back((v >> (8 * i)) & 0xff);
}

// Writes the frames (one grey or colour frame, or three single-colour ones) as a 24-bit bitmap.
bool writeBitmap(const char* fileName, const std::vector<Frame>& frames, int dpi) {
    const SANE_Parameters& p = frames.front().p;
    const int w = p.pixels_per_line, h = p.lines;
    if (w <= 0 || h <= 0) return false;
    const int stride = (w * 3 + 3) & ~3;
    std::vector<unsigned char> b;
    const uint32_t size = uint32_t(54 + stride * h);
    const uint32_t ppm = uint32_t(dpi > 0 ? dpi * 10000 / 254 : 3780);
    b.push_back('B');
    b.push_back('M');
    put32(b, size);
    put32(b, 0);
    put32(b, 54);
    put32(b, 40);
    put32(b, uint32_t(w));
    put32(b, uint32_t(h)); // bottom-up
    put16(b, 1);
    put16(b, 24);
    put32(b, 0);
    put32(b, uint32_t(stride * h));
    put32(b, ppm);
    put32(b, ppm);
    put32(b, 0);
    put32(b, 0);
    b.resize(size, 0);
    // The frame that carries each colour: one RGB or grey frame, or a frame per colour.
    const Frame* of[3] = {&frames.front(), &frames.front(), &frames.front()};
    for (const Frame& f : frames) {
        if (f.p.format == SANE_FRAME_RED) of[0] = &f;
        if (f.p.format == SANE_FRAME_GREEN) of[1] = &f;
        if (f.p.format == SANE_FRAME_BLUE) of[2] = &f;
    }
    for (int y = 0; y < h; ++y) {
        unsigned char* out = b.data() + 54 + size_t(h - 1 - y) * size_t(stride);
        for (int x = 0; x < w; ++x) {
            unsigned char rgb[3];
            for (int c = 0; c < 3; ++c) {
                const Frame& f = *of[c];
                if (y >= f.p.lines || x >= f.p.pixels_per_line) {
                    rgb[c] = 255;
                    continue;
                }
                const unsigned char* line = f.bytes.data() + size_t(y) * size_t(f.p.bytes_per_line);
                const bool rgbFrame = f.p.format == SANE_FRAME_RGB;
                rgb[c] = sample(line, x, rgbFrame ? c : 0, rgbFrame ? 3 : 1, f.p.depth);
            }
            out[3 * x] = rgb[2];
            out[3 * x + 1] = rgb[1];
            out[3 * x + 2] = rgb[0];
        }
    }
    std::FILE* file = std::fopen(fileName, "wb");
    if (!file) {
        say(std::string("cannot write ") + fileName);
        return false;
    }
    const bool ok = std::fwrite(b.data(), 1, b.size(), file) == b.size();
    return std::fclose(file) == 0 && ok;
}

int resolution(SANE_Handle h) {
    for (SANE_Int i = 1;; ++i) {
        const SANE_Option_Descriptor* d = sane_get_option_descriptor(h, i);
        if (!d) return 0;
        if (!d->name || std::strcmp(d->name, SANE_NAME_SCAN_RESOLUTION) != 0) continue;
        SANE_Word w = 0;
        if (sane_control_option(h, i, SANE_ACTION_GET_VALUE, &w, nullptr) != SANE_STATUS_GOOD) return 0;
        return d->type == SANE_TYPE_FIXED ? int(SANE_UNFIX(w)) : int(w);
    }
}

bool scan(const char* fileName) {
    auto settings = readSettings();
    std::string device;
    if (const char* env = std::getenv("IMGSCAN_DEVICE"); env && *env) device = env;
    for (const auto& [name, value] : settings)
        if (name == "device" && device.empty()) device = value;
    if (device.empty()) {
        const SANE_Device** list = nullptr;
        if (sane_get_devices(&list, SANE_FALSE) != SANE_STATUS_GOOD || !list || !list[0]) {
            say("no scanner found");
            return false;
        }
        device = list[0]->name;
    }
    SANE_Handle h = nullptr;
    if (SANE_Status st = sane_open(device.c_str(), &h); st != SANE_STATUS_GOOD) {
        say("open " + device + ": " + sane_strstatus(st));
        return false;
    }
    for (const auto& [name, value] : settings)
        if (name != "device") setOption(h, name, value);
    std::vector<Frame> frames;
    bool ok = true;
    do {
        frames.emplace_back();
        ok = readFrame(h, frames.back());
    } while (ok && !frames.back().p.last_frame && frames.size() < 3);
    ok = ok && writeBitmap(fileName, frames, resolution(h));
    sane_cancel(h);
    sane_close(h);
    return ok;
}

} // namespace

extern "C" __attribute__((visibility("default"))) bool ScanImage(const char* fileName) {
    if (!fileName || !*fileName) return false;
    SANE_Int version = 0;
    if (sane_init(&version, nullptr) != SANE_STATUS_GOOD) {
        say("SANE does not start");
        return false;
    }
    const bool ok = scan(fileName);
    sane_exit();
    return ok;
}
