static const int a = 1;
int b;
static const char c = 'x';
