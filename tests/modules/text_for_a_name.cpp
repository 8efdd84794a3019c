// Exports a text where a function is expected; what a module with no regard for the public header can do.

extern "C" {
__attribute__((visibility("default"))) extern const char GetPlugInName[];
const char GetPlugInName[] = "text";
}
