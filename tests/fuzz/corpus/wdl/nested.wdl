$p = 0 5 1 5;
A { Z Test Default None 0 1 50 } = 1 10(0 5 (1 2)#3 )#2 $p *3 @RZ ;
B = $p ## ;
