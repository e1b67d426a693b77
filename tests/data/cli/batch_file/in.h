const int a = 1;
int b;
const char c = 'x';
