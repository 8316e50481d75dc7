[MainBand]
Caption=Broadcast
Description=Broadcast bands
[SubBand.0]
Caption=LW
Description=Long wave
FreqMin=148500
FreqMax=283500
[SubBand.1]
Caption=MW
Description=Medium wave
FreqMin=526500
FreqMax=1606500
[SubBand.2]
Caption=75m
Description=75 metre band
FreqMin=3900000
FreqMax=4000000
[SubBand.3]
Caption=60m
Description=60 metre tropical band
FreqMin=4750000
FreqMax=5060000
[SubBand.4]
Caption=49m
Description=49 metre band
FreqMin=5900000
FreqMax=6200000
[SubBand.5]
Caption=41m
Description=41 metre band
FreqMin=7200000
FreqMax=7450000
[SubBand.6]
Caption=31m
Description=31 metre band
FreqMin=9400000
FreqMax=9900000
[SubBand.7]
Caption=25m
Description=25 metre band
FreqMin=11600000
FreqMax=12100000
[SubBand.8]
Caption=22m
Description=22 metre band
FreqMin=13570000
FreqMax=13870000
[SubBand.9]
Caption=19m
Description=19 metre band
FreqMin=15100000
FreqMax=15830000
[SubBand.10]
Caption=16m
Description=16 metre band
FreqMin=17480000
FreqMax=17900000
