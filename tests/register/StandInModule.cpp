// Modules as one finds them, good and bad; the build says which this is.
#define VISIBLE __attribute__((visibility("default")))

int registerTestCommon();
int registerTestNowhere();

extern "C" VISIBLE int registerTestModule();
extern "C" VISIBLE void* PegasusCreateProvider();

// Each but the one for another server needs the server's library.
int registerTestModule() {
#if defined(MODULE_EMBEDDED)
    return 0;
#elif defined(MODULE_UNDEFINED)
    return registerTestNowhere();
#else
    return registerTestCommon();
#endif
}

#if !defined(MODULE_EMPTY)
void* PegasusCreateProvider() { return nullptr; }
#endif
