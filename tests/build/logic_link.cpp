/// Every object of the logic is linked into this program; that the link works without the toolkit
/// is what it is for.
int main() { return 0; }
