// café in Latin-1
 0x10
