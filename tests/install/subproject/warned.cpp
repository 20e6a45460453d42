static int unused() { return 0; }
