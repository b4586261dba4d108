%MASTERCLOCKMULT = 1;
%SMALLESTUNIT    = 9;
%AUTOASSIGN      = 0;
%DECIMALS        = 0;
%ENDTIME         = 3200;
$cs = 1 160 0 2800 1 240;
$byte = (0 40 1 40)#8 ;
$sclk = 0 200 $byte #4  0 440;
$readid = 1 1 0 2 1 5;
$mosi = 0 200 $readid *80  0 2360;
$maker = 1 3 0 1 1 4;
$type = 0 1 1 1 0 6;
$size = 0 3 1 2 0 3;
_CS { Z Out Default None 0 1 50 } =  $cs ;
SCLK { Z Out Default None 0 1 50 } =  $sclk ;
MOSI { Z Out Default None 0 1 50 } =  $mosi ;
MISO { Z In Default None 0 1 50 } = 3 840 $maker *80  $type *80 
   $size *80  3 440;
SPI[2:0] { Z Test Default None 0 1 50 } =  $cs +$sclk +$mosi 
  ;
RXDATA[7:0] { Z Test Default None 0 1 50 } = 0 1480 ef 640 40 640
   18 440;
