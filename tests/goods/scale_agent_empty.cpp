// A library of the scale agent's name that has another function than the one that is looked for.
#if defined(_WIN32)
extern "C" __declspec(dllexport)
#else
extern "C" __attribute__((visibility("default")))
#endif
    int GoodInfo_Forget() {
    return 1;
}
