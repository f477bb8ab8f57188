// What a graphics driver keeps to the end of the process is no leak of ours.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:swrast_dri\n";
}
#endif
