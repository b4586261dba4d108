B[1:0] = 2 5 1 5;
y = 1 10;
B[1];
b[1],y;
b[0],Z { A In Default None 0 1 50 };
CLK,z = 2 5;
A[3:3] = 1 5;
A[3],A[2];
