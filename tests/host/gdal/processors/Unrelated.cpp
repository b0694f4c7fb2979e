extern "C" int unrelated() {
    return 1;
}
