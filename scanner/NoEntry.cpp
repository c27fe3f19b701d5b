// A module that loads but has no ScanImage: what the image pages frame must refuse.
extern "C" __attribute__((visibility("default"))) int ScanImageNot(const char*) {
    return 0;
}
