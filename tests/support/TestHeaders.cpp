// Only its precompiled headers are used.
int main() {}
