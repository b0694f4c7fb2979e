<?xml version="1.0" encoding="UTF-8"?>
<City xmlns="urn:halvane:example:bridges" xmlns:gml="http://www.opengis.net/gml/3.2" xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" gml:id="city">
  <member>
    <Borough gml:id="borough.1">
      <gml:name>Manhattan</gml:name>
      <census>
        <Count>
          <year>2010</year>
          <residents>1585873</residents>
        </Count>
      </census>
      <census>
        <Count>
          <year>2020</year>
          <residents>1694251</residents>
        </Count>
      </census>
      <area uom="m2">58957325</area>
      <extent>
        <gml:MultiSurface gml:id="borough.1.extent" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.1">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6844915 -74.0109284 40.6861747 -74.0081641 40.6864002 -74.0083545 40.6840952 -74.012176 40.6844915 -74.0109284</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.2">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.687606 -74.0050037 40.6882063 -74.0074201 40.6873851 -74.0078329 40.6867842 -74.0056299 40.687606 -74.0050037</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.3">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6889296 -74.0038204 40.6896697 -74.0063646 40.6888269 -74.0067844 40.6882152 -74.0045927 40.6889296 -74.0038204</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.4">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6904266 -74.0029757 40.6910916 -74.0053421 40.6902364 -74.005759 40.6896133 -74.0034092 40.6904266 -74.0029757</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.5">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6901877 -74.0438776 40.6911226 -74.0461471 40.6899153 -74.0477296 40.6885162 -74.0443852 40.6901877 -74.0438776</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.6">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6914631 -74.0013256 40.6925288 -74.0044094 40.6917616 -74.0047942 40.6906119 -74.0006991 40.6914631 -74.0013256</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.7">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6933434 -74.0167476 40.6931141 -74.0197331 40.6861753 -74.0264258 40.6829169 -74.0230557 40.6892802 -74.0123069 40.6925182 -74.0118492 40.6933434 -74.0167476</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.8">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.692786 -74.0015417 40.6932961 -74.0012701 40.6940516 -74.0034535 40.6932082 -74.004008 40.692786 -74.0015417</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.9">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6942865 -74.000783 40.6949658 -74.0002687 40.6957117 -74.002398 40.6947778 -74.0030139 40.6942865 -74.000783</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.10">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6970525 -74.0004315 40.6969262 -74.0004893 40.6965748 -73.9995237 40.6968852 -73.9994074 40.6970525 -74.0004315</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.11">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6980633 -73.9983776 40.6987578 -74.0004877 40.6979082 -74.001049 40.6971576 -73.9988712 40.6980633 -73.9983776</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.12">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6987977 -73.9979996 40.6996389 -73.997499 40.7003228 -73.9994746 40.699466 -74.0000184 40.6987977 -73.9979996</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.13">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7008906 -74.0399504 40.6980204 -74.0436737 40.696453 -74.0416605 40.6995367 -74.0412426 40.699344 -74.0377112 40.7008906 -74.0399504</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.14">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.702643 -73.9953845 40.7033771 -73.9961923 40.7015188 -73.9981388 40.700877 -73.9966977 40.702643 -73.9953845</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.15">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7031479 -73.9950213 40.703292 -73.9948004 40.7035541 -73.9952935 40.7032753 -73.9954456 40.7031479 -73.9950213</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.16">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7039529 -73.9947693 40.7040087 -73.994882 40.7038082 -73.9950293 40.703788 -73.9948824 40.7039529 -73.9947693</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.17">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7055434 -73.9823734 40.705737 -73.9823021 40.7058989 -73.9810239 40.7058221 -73.9824229 40.7055434 -73.9823734</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.18">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7183161 -73.967151 40.7184831 -73.9671824 40.7183131 -73.9673074 40.717968 -73.9665969 40.7180159 -73.9665624 40.7183161 -73.967151</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.19">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7190563 -73.966365 40.7191324 -73.9666299 40.7187732 -73.9658585 40.7190563 -73.966365</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.20">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.720404 -73.9643509 40.7205448 -73.9645931 40.7204705 -73.9646828 40.7202967 -73.9643977 40.720404 -73.9643509</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.21">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7209384 -73.9639979 40.7214751 -73.9648942 40.7213573 -73.9650491 40.7207555 -73.9640877 40.7209384 -73.9639979</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.22">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7242091 -73.962366 40.7241316 -73.9624679 40.7238803 -73.9620727 40.7239919 -73.9620074 40.7242091 -73.962366</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.23">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7331137 -73.9623039 40.7329578 -73.9640651 40.7327914 -73.9640717 40.7329156 -73.9622634 40.7331137 -73.9623039</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.24">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7404236 -73.961247 40.7404589 -73.9616298 40.7403561 -73.9616416 40.7403205 -73.9612629 40.7404236 -73.961247</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.25">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7466043 -73.9642123 40.7468655 -73.9641598 40.7464544 -73.9645832 40.7464104 -73.9644452 40.7466043 -73.9642123</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.26">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7690469 -73.9418003 40.7729593 -73.9401796 40.7496007 -73.9613302 40.7570953 -73.9525408 40.7690469 -73.9418003</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.27">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7808295 -73.9380464 40.7814184 -73.9380821 40.7795276 -73.9395302 40.7804678 -73.9375989 40.7808295 -73.9380464</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.28">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8008521 -73.9213375 40.8019985 -73.9252752 40.800393 -73.9272477 40.7909788 -73.9278933 40.7918208 -73.9255873 40.7907316 -73.9261041 40.7897203 -73.9324015 40.7830064 -73.9350235 40.7809203 -73.9281012 40.7823205 -73.9244805 40.7920125 -73.9151413 40.7956655 -73.9144383 40.8008521 -73.9213375</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.29">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8029545 -73.9293648 40.8033814 -73.9295685 40.8034272 -73.9296954 40.8029689 -73.9295153 40.8029545 -73.9293648</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.30">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.803495 -73.9282977 40.8039244 -73.9285037 40.8039684 -73.9286302 40.8035116 -73.9284524 40.803495 -73.9282977</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.31">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8776215 -73.9264056 40.8538677 -73.94187 40.8504655 -73.9469644 40.8438925 -73.9461242 40.8324505 -73.9513164 40.8236938 -73.9595558 40.8222831 -73.9582002 40.7852103 -73.987119 40.7798789 -73.9888861 40.7795748 -73.9915511 40.7796929 -73.9888686 40.775116 -73.9922671 40.773987 -73.9961795 40.7724872 -73.9941633 40.7735037 -73.9966854 40.7714681 -73.994935 40.7704633 -73.9990268 40.7687326 -73.9970718 40.7695062 -73.9997359 40.7671287 -73.9971559 40.7682452 -74.0006495 40.7658719 -73.9980668 40.7669965 -74.0015618 40.7655522 -73.9982709 40.7655615 -74.002288 40.7635591 -73.9996226 40.7647363 -74.0031465 40.7634203 -74.0009731 40.763777 -74.0036121 40.7626446 -74.0015331 40.7625243 -74.0045564 40.7615437 -74.0023353 40.7595107 -74.0038066 40.7592319 -74.0070036 40.7578098 -74.0048039 40.7529336 -74.0099706 40.748678 -74.0112156 40.7477856 -74.0090585 40.7476306 -74.0114067 40.7467628 -74.0092431 40.7466015 -74.0115912 40.7457501 -74.0094639 40.7456016 -74.0117828 40.7439179 -74.0089003 40.7435593 -74.0121481 40.7428861 -74.0090916 40.7417585 -74.0121175 40.7407427 -74.0094915 40.7407476 -74.0126593 40.7391743 -74.010393 40.7334426 -74.0107342 40.7333323 -74.0139996 40.7330203 -74.0109413 40.728463 -74.0143907 40.7282293 -74.0113832 40.7264473 -74.011542 40.7263619 -74.0152043 40.7258718 -74.0116533 40.7189222 -74.0130681 40.7186242 -74.0167102 40.7060937 -74.0193425 40.7003183 -74.0150682 40.7006693 -74.0083493 40.7019546 -74.0093091 40.7030157 -74.0042726 40.7043101 -74.0053503 40.7085096 -73.9980835 40.7115358 -73.9767122 40.7273501 -73.9714904 40.7358946 -73.9745146 40.7358033 -73.9724899 40.7438385 -73.9713575 40.7746763 -73.9429304 40.7833279 -73.9432399 40.7958531 -73.9292794 40.8010809 -73.9290349 40.8095622 -73.9343386 40.8352308 -73.9349153 40.8581649 -73.9203648 40.8600728 -73.9215901 40.8587911 -73.9195021 40.8714854 -73.9104264 40.875464 -73.9208756 40.8730824 -73.9212554 40.8767802 -73.9223977 40.8776215 -73.9264056</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.32">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8788987 -73.9235974 40.8789639 -73.9236297 40.8788261 -73.9236792 40.8788154 -73.923637 40.8788987 -73.9235974</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.1.extent.33">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8757525 -73.906651 40.879038 -73.9103319 40.8757169 -73.9157852 40.8721573 -73.9089324 40.8757525 -73.906651</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
        </gml:MultiSurface>
      </extent>
    </Borough>
  </member>
  <member>
    <Borough gml:id="borough.2">
      <gml:name>Bronx</gml:name>
      <census>
        <Count>
          <year>2010</year>
          <residents>1385108</residents>
        </Count>
      </census>
      <census>
        <Count>
          <year>2020</year>
          <residents>1472654</residents>
        </Count>
      </census>
      <area uom="m2">110624902</area>
      <extent>
        <gml:MultiSurface gml:id="borough.2.extent" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.1">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7958084 -73.8968088 40.7971165 -73.8978825 40.7965025 -73.8991943 40.7956448 -73.8979684 40.7958084 -73.8968088</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.2">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7987063 -73.8888515 40.7928171 -73.8928228 40.7873726 -73.8890521 40.7853566 -73.8783068 40.7867979 -73.8716307 40.7910369 -73.8722188 40.7943598 -73.8779752 40.7956898 -73.883716 40.7980382 -73.8866511 40.7987063 -73.8888515</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.3">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8024128 -73.8983304 40.8009087 -73.9000374 40.7992642 -73.90021 40.8007905 -73.8964667 40.8024128 -73.8983304</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.4">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8346671 -73.7883335 40.8353099 -73.788457 40.835364 -73.7895102 40.8344649 -73.7893122 40.8346671 -73.7883335</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.5">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8416348 -73.802223 40.8424891 -73.806808 40.8414624 -73.8069461 40.8410812 -73.8026381 40.8416348 -73.802223</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.6">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8557352 -73.7806173 40.8560878 -73.7812278 40.8550013 -73.7815639 40.8549681 -73.7809048 40.8557352 -73.7806173</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.7">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8558703 -73.7828329 40.8563629 -73.7834349 40.8551734 -73.7836782 40.8550928 -73.7830237 40.8558703 -73.7828329</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.8">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8586099 -73.7901875 40.8564678 -73.7931469 40.8536007 -73.7924582 40.8539184 -73.7910572 40.8529442 -73.7928761 40.8531991 -73.7908076 40.8524948 -73.7928151 40.853023 -73.7904205 40.8515783 -73.7931184 40.8513008 -73.7895137 40.8467317 -73.7917934 40.83721 -73.7858307 40.8370644 -73.78564 40.8374705 -73.7848501 40.8363382 -73.7828226 40.8420462 -73.780196 40.8424944 -73.7804258 40.8416891 -73.7821662 40.8427866 -73.7805974 40.8424781 -73.782865 40.8437782 -73.7802277 40.8436547 -73.7834748 40.8438831 -73.779927 40.8445251 -73.7805274 40.8439361 -73.7829065 40.8436785 -73.7834843 40.8444447 -73.7833654 40.8469311 -73.7804033 40.8534747 -73.7879626 40.8575599 -73.7880434 40.8586099 -73.7901875</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.9">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8544422 -73.7678321 40.8550436 -73.7653324 40.8599866 -73.7721922 40.8521593 -73.7729636 40.8450973 -73.7690139 40.8525361 -73.7693853 40.8544422 -73.7678321</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.10">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8604771 -73.7845243 40.8600451 -73.7868589 40.8589032 -73.7874056 40.858827 -73.7851966 40.8604771 -73.7845243</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.11">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8612086 -73.7729023 40.8616146 -73.7731063 40.8607472 -73.7732315 40.8612086 -73.7729023</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.12">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.862069 -73.7746016 40.8614467 -73.7752734 40.8611924 -73.7752321 40.8618169 -73.7746338 40.862069 -73.7746016</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.13">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8628562 -73.7831259 40.8627807 -73.7832805 40.8620687 -73.783145 40.8624064 -73.782882 40.8628562 -73.7831259</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.14">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.863132 -73.7840125 40.8632051 -73.7842865 40.8625428 -73.7846917 40.8626106 -73.7837677 40.863132 -73.7840125</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.15">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8654856 -73.7696499 40.8655259 -73.770069 40.8651389 -73.7702293 40.8651282 -73.7697915 40.8654856 -73.7696499</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.16">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8670978 -73.7666897 40.8674964 -73.7676007 40.8667812 -73.7677945 40.8667046 -73.7670991 40.8670978 -73.7666897</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.17">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8715499 -73.7708098 40.8719811 -73.7721779 40.8712453 -73.7728804 40.8704769 -73.7699071 40.8715499 -73.7708098</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.18">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8732093 -73.7864851 40.8733937 -73.786262 40.8734816 -73.7864999 40.8730745 -73.7867269 40.8732093 -73.7864851</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.19">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8737826 -73.7860539 40.8738853 -73.7861946 40.8736777 -73.7863333 40.8735997 -73.7861892 40.8737826 -73.7860539</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.20">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.87417 -73.7743524 40.8743948 -73.7740318 40.8748962 -73.7740954 40.87471 -73.7745364 40.87417 -73.7743524</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.21">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8749233 -73.7824181 40.8751681 -73.782476 40.8749489 -73.7828021 40.8747927 -73.7826579 40.8749233 -73.7824181</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.22">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.876484 -73.7810335 40.8766527 -73.7811277 40.8763613 -73.781327 40.876285 -73.7812065 40.876484 -73.7810335</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.23">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.8809401 -73.7865055 40.8804474 -73.7874253 40.8796827 -73.7872679 40.880364 -73.78578 40.8809401 -73.7865055</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.2.extent.24">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.904441 -73.8729486 40.9155328 -73.9103326 40.9137666 -73.9114996 40.8788884 -73.9249033 40.8756636 -73.9177567 40.879038 -73.9103319 40.8757525 -73.906651 40.8636321 -73.9122728 40.8531889 -73.9225618 40.8356788 -73.9329964 40.808364 -73.9322826 40.8026957 -73.9276279 40.7966263 -73.9117465 40.8049481 -73.9022228 40.8068636 -73.8950984 40.8059253 -73.8893744 40.8021309 -73.8850517 40.8027027 -73.878433 40.8001748 -73.8723468 40.8067518 -73.8681122 40.8120873 -73.8705681 40.8161311 -73.87652 40.8144869 -73.870778 40.8105838 -73.8676565 40.8081638 -73.8593898 40.8102714 -73.8589514 40.8062699 -73.8591955 40.8046643 -73.8562461 40.8046994 -73.8486478 40.8122988 -73.8491451 40.8142889 -73.8553803 40.8143965 -73.8511447 40.8106767 -73.846173 40.8199349 -73.8399986 40.8297941 -73.8431069 40.8340417 -73.8395911 40.8395654 -73.8397201 40.8336907 -73.8388523 40.829074 -73.8423308 40.8221405 -73.8388823 40.8125411 -73.840432 40.8062026 -73.8374361 40.8049383 -73.8316157 40.8108391 -73.8301825 40.8138475 -73.8162006 40.804263 -73.7910372 40.8073411 -73.7908648 40.8101974 -73.8022425 40.812895 -73.8050521 40.8165337 -73.807046 40.8156359 -73.8051147 40.8124487 -73.8030478 40.8157635 -73.7973811 40.8190271 -73.8046193 40.8253884 -73.8069777 40.8241903 -73.8139711 40.8268035 -73.8138497 40.8281932 -73.809928 40.8310301 -73.8148794 40.8413757 -73.8147335 40.8443421 -73.8182407 40.84438 -73.8156661 40.8430889 -73.8143746 40.8466817 -73.8116997 40.8455 -73.8150263 40.8471514 -73.8135637 40.8472743 -73.8136863 40.8462913 -73.8157035 40.8472196 -73.8146459 40.8464545 -73.8161054 40.8512696 -73.8171241 40.8540823 -73.8164087 40.854162 -73.812306 40.8588775 -73.8127315 40.8611806 -73.8164139 40.8630575 -73.8151032 40.8624645 -73.8111046 40.8584818 -73.8075941 40.8615385 -73.8047864 40.8533401 -73.8041756 40.8481449 -73.8002903 40.8549144 -73.7987226 40.856527 -73.7943501 40.8608296 -73.7919045 40.8681413 -73.7913903 40.8698454 -73.7879545 40.8683417 -73.7856025 40.8706704 -73.7832018 40.873781 -73.7835874 40.8717453 -73.7852615 40.87359 -73.7850814 40.8727306 -73.7871909 40.8784205 -73.7843817 40.8789981 -73.7895231 40.8812613 -73.7895587 40.8792641 -73.7928891 40.8732005 -73.7947904 40.8658151 -73.8030604 40.8711897 -73.808416 40.8691551 -73.803022 40.872505 -73.8033912 40.8705066 -73.8025228 40.8751353 -73.7974382 40.8833587 -73.7930065 40.894067 -73.838392 40.9041727 -73.8413869 40.9075303 -73.8534752 40.9103715 -73.8510712 40.9089395 -73.8545894 40.9005172 -73.8594678 40.904441 -73.8729486</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
        </gml:MultiSurface>
      </extent>
    </Borough>
  </member>
  <member>
    <Borough gml:id="borough.3">
      <gml:name>Brooklyn</gml:name>
      <census>
        <Count>
          <year>2010</year>
          <residents>2504700</residents>
        </Count>
      </census>
      <census>
        <Count>
          <year>2020</year>
          <residents>2736074</residents>
        </Count>
      </census>
      <area uom="m2">179441870</area>
      <extent>
        <gml:MultiSurface gml:id="borough.3.extent" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.1">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.582088 -73.8670615 40.5879881 -73.861253 40.5918927 -73.8663505 40.5868739 -73.8711592 40.5826366 -73.8700031 40.582088 -73.8670615</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.2">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5987138 -73.8695271 40.5969542 -73.870209 40.5966886 -73.8696707 40.5987138 -73.8695271</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.3">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5996005 -73.9199006 40.5973329 -73.9218228 40.5915875 -73.9152448 40.5920192 -73.913009 40.5981611 -73.9162639 40.5996005 -73.9199006</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.4">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5989964 -73.8701949 40.6016812 -73.8702628 40.6026044 -73.8704941 40.5989011 -73.8710814 40.5989964 -73.8701949</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.5">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5973334 -73.8524334 40.5988394 -73.8507675 40.6018672 -73.854826 40.6025503 -73.8611281 40.6003222 -73.86336 40.5964719 -73.8604442 40.5973334 -73.8524334</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.6">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6037434 -73.8670291 40.6039611 -73.8679351 40.6031392 -73.8683081 40.6030708 -73.8676819 40.6037434 -73.8670291</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.7">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.604853 -73.8467365 40.6047027 -73.8478625 40.6035194 -73.845623 40.6036821 -73.844922 40.6047983 -73.8445487 40.6041874 -73.8464137 40.6045446 -73.8460806 40.604853 -73.8467365</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.8">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6054333 -73.8482798 40.6051423 -73.8482487 40.605085 -73.8478368 40.605355 -73.8479528 40.6054333 -73.8482798</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.9">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6059208 -73.8484034 40.6059636 -73.8485434 40.6058903 -73.8487196 40.6057794 -73.8482611 40.6059208 -73.8484034</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.10">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6080682 -73.867024 40.6082412 -73.8686847 40.6070352 -73.8687432 40.6080682 -73.867024</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.11">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6071925 -73.8344627 40.6091857 -73.8342834 40.6056369 -73.835876 40.6071925 -73.8344627</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.12">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6065401 -73.8696644 40.6097236 -73.8710387 40.6105555 -73.8730012 40.6046942 -73.8710933 40.6065401 -73.8696644</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.13">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6123422 -73.8504762 40.6102437 -73.8519638 40.6108345 -73.8566 40.6074599 -73.8550664 40.6098221 -73.8494215 40.6123422 -73.8504762</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.14">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6139692 -73.8447349 40.6080877 -73.8448623 40.606564 -73.8496988 40.6060653 -73.8469656 40.6072978 -73.8463903 40.6062923 -73.8459099 40.6050825 -73.8474674 40.6066033 -73.8445771 40.6045031 -73.8437957 40.6064165 -73.8439005 40.60493 -73.8419362 40.6041045 -73.8439733 40.6046903 -73.8411295 40.61219 -73.836228 40.6114463 -73.8406747 40.6139692 -73.8447349</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.15">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6209786 -73.8337015 40.6155999 -73.8377878 40.6143654 -73.8343417 40.6143812 -73.8340189 40.6209786 -73.8337015</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.16">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6226255 -73.8347803 40.6210113 -73.8349872 40.6209842 -73.8341226 40.6226026 -73.8336224 40.6226255 -73.8347803</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.17">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6233208 -73.8502309 40.6205652 -73.8518533 40.6219593 -73.8551713 40.6203037 -73.8574017 40.6202472 -73.8508511 40.6223657 -73.8484637 40.6233208 -73.8502309</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.18">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.623595 -73.8335934 40.623936 -73.8335592 40.6239553 -73.8336358 40.6236937 -73.8337076 40.623595 -73.8335934</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.19">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6239904 -73.862124 40.6243215 -73.8620647 40.6239514 -73.8637774 40.623303 -73.8630388 40.6239904 -73.862124</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.20">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6249718 -73.8458946 40.6230486 -73.845367 40.6233239 -73.8429386 40.6248546 -73.8447655 40.6249718 -73.8458946</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.21">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6274953 -73.8404847 40.6274408 -73.8423818 40.6258647 -73.8407212 40.6272938 -73.839467 40.6274953 -73.8404847</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.22">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6173568 -73.8687292 40.6205467 -73.8650083 40.6282554 -73.8664548 40.6189261 -73.8797353 40.6157983 -73.8779807 40.6173568 -73.8687292</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.23">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6290947 -73.8473435 40.6275548 -73.8522154 40.6290974 -73.8565055 40.624729 -73.8580043 40.6249396 -73.849554 40.6290947 -73.8473435</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.24">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.630561 -73.8485199 40.6306127 -73.8486937 40.630459 -73.8486844 40.6304489 -73.8484485 40.630561 -73.8485199</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.25">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6320228 -73.8530001 40.6337226 -73.8543462 40.6304583 -73.8585584 40.630359 -73.8521861 40.6320228 -73.8530001</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.26">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6352858 -73.8463846 40.6366923 -73.8442727 40.6387317 -73.8466791 40.6321196 -73.8499938 40.6327797 -73.8478265 40.6352858 -73.8463846</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.3.extent.27">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7391148 -73.9543956 40.7340477 -73.9622852 40.7258656 -73.9616152 40.7246492 -73.9579418 40.7251481 -73.9621146 40.7169857 -73.967268 40.7104723 -73.9700883 40.7034374 -73.9675152 40.7049293 -73.9701808 40.7090829 -73.9723203 40.7058501 -73.9710966 40.7076811 -73.9746297 40.7005191 -73.9694866 40.7027287 -73.9728351 40.6999787 -73.970782 40.7016698 -73.9731868 40.7001663 -73.972392 40.7013053 -73.9741151 40.6995672 -73.9757211 40.7015903 -73.9745502 40.706 -73.9783447 40.7043763 -73.9945698 40.6901288 -74.0009616 40.6838877 -74.0119326 40.6832687 -74.0096711 40.6804124 -74.0130184 40.6836224 -74.01282 40.6796481 -74.0192813 40.6722508 -74.0188009 40.6746776 -74.0149639 40.6729083 -74.016321 40.6733279 -74.0129759 40.6710388 -74.0156863 40.67213 -74.0142329 40.670754 -74.0151998 40.6706578 -74.0117535 40.6697286 -74.0142493 40.6690782 -74.0103385 40.6657324 -74.0122797 40.6649305 -74.0164867 40.6716249 -74.0193395 40.6648466 -74.0169027 40.6645683 -74.0157487 40.6650859 -74.0115402 40.6685236 -74.0098541 40.6685914 -74.0070872 40.6670517 -74.0075482 40.6709215 -74.0054393 40.6660522 -74.0069671 40.6660496 -74.0068324 40.6679938 -74.0058637 40.6673485 -74.0028948 40.671602 -73.9987694 40.668443 -73.999026 40.6674503 -73.9999815 40.6664623 -74.0029246 40.6643975 -73.9995315 40.6629017 -74.0011352 40.6650648 -74.0048619 40.6627348 -74.0036286 40.6647911 -74.0076743 40.6622406 -74.003488 40.6632677 -74.0095507 40.6595209 -74.0085996 40.6619817 -74.0126536 40.6589128 -74.0118386 40.6607584 -74.0155417 40.6594502 -74.017458 40.6569504 -74.0150474 40.6573689 -74.0191084 40.6553388 -74.0166505 40.6564872 -74.0198008 40.6540615 -74.0178741 40.6540961 -74.0232046 40.650835 -74.0212465 40.6527214 -74.0253689 40.6511692 -74.0228514 40.6509943 -74.0260513 40.6467256 -74.0250711 40.6488041 -74.0293899 40.6462614 -74.0260495 40.644016 -74.0282057 40.6443139 -74.0340733 40.6391412 -74.0367248 40.6395883 -74.038763 40.6389842 -74.0368066 40.6301903 -74.0410632 40.6205627 -74.0416174 40.6092956 -74.0360398 40.6047592 -74.0300515 40.600722 -74.0109157 40.592537 -74.0010575 40.5935314 -73.9983883 40.5914785 -74.0002308 40.5916062 -73.9971898 40.5883434 -73.9978831 40.5864748 -74.0003737 40.5886934 -73.994079 40.5862439 -73.9995651 40.583074 -74.0001792 40.5822101 -73.9954719 40.5846191 -73.9902624 40.5810799 -73.9916301 40.5796707 -73.9880097 40.5817207 -73.9860451 40.5788158 -73.9884283 40.5819837 -74.0060473 40.5800784 -74.0114793 40.5748851 -74.0120154 40.5721856 -74.0030319 40.569586 -74.0020855 40.5713962 -73.9837579 40.56953 -73.9833606 40.5715424 -73.9828272 40.5761631 -73.9310629 40.5812647 -73.9325801 40.5829882 -73.9534932 40.5835582 -73.924436 40.581794 -73.9115416 40.5831908 -73.9172986 40.5833518 -73.9124602 40.5860958 -73.9134996 40.5846407 -73.9252908 40.5868498 -73.9312519 40.5886139 -73.9297285 40.5949295 -73.9326042 40.5940945 -73.9300165 40.5885726 -73.9286306 40.5911399 -73.9239529 40.5877025 -73.9280791 40.5856326 -73.9247571 40.5859625 -73.9191903 40.5891969 -73.9142057 40.6017223 -73.9310892 40.6040285 -73.9301676 40.5998215 -73.9248649 40.6019237 -73.9215169 40.5987811 -73.915133 40.594507 -73.9120423 40.5860787 -73.9114817 40.5876701 -73.8990303 40.5767698 -73.8955238 40.5801351 -73.8797023 40.5849144 -73.8767167 40.6055491 -73.8839643 40.601607 -73.9089423 40.6028639 -73.9144281 40.6077388 -73.9195221 40.6149325 -73.9142224 40.6088209 -73.9170884 40.6039825 -73.9136512 40.6040734 -73.9083254 40.6066587 -73.9086396 40.6057634 -73.9016421 40.6104228 -73.9022586 40.6174364 -73.9087909 40.6117179 -73.901333 40.6055031 -73.8998322 40.6067434 -73.8933462 40.6114536 -73.8896963 40.6112142 -73.8939639 40.612834 -73.8909541 40.6145181 -73.8958611 40.6214282 -73.8964748 40.6216288 -73.9007046 40.6244099 -73.9022871 40.6314418 -73.9175066 40.6224856 -73.8954847 40.6283318 -73.8875267 40.6275594 -73.8836923 40.6309433 -73.8836445 40.6359765 -73.8771443 40.6493507 -73.891003 40.6366587 -73.8744487 40.6381153 -73.8679971 40.654622 -73.8793321 40.6387868 -73.8656325 40.6425507 -73.8628946 40.6436786 -73.8571698 40.6502787 -73.8572233 40.6569412 -73.8632762 40.6638675 -73.8556846 40.6716562 -73.8576332 40.6712517 -73.8603852 40.6791648 -73.8623458 40.6819196 -73.8660199 40.6947181 -73.8684249 40.6941913 -73.8740205 40.6866847 -73.8845225 40.6834245 -73.8925232 40.6852832 -73.8941746 40.6823364 -73.8964663 40.6914423 -73.9012329 40.6941272 -73.905796 40.6957004 -73.9042602 40.7093961 -73.9218918 40.7173207 -73.9236399 40.714903 -73.9308519 40.7087177 -73.9303609 40.7109787 -73.9332835 40.7149721 -73.9321975 40.7191625 -73.9245795 40.7273979 -73.9292433 40.7297285 -73.9381033 40.7354257 -73.9423944 40.7366123 -73.9455705 40.734402 -73.9470653 40.7353552 -73.9471998 40.7369269 -73.9465235 40.7391148 -73.9543956</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
        </gml:MultiSurface>
      </extent>
    </Borough>
  </member>
  <member>
    <Borough gml:id="borough.4">
      <gml:name>Queens</gml:name>
      <census>
        <Count>
          <year>2010</year>
          <residents>2230722</residents>
        </Count>
      </census>
      <census>
        <Count>
          <year>2020</year>
          <residents>2405464</residents>
        </Count>
      </census>
      <area uom="m2">282416783</area>
      <extent>
        <gml:MultiSurface gml:id="borough.4.extent" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.1">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6119917 -73.7457615 40.6108794 -73.7599845 40.6090314 -73.7615505 40.6091517 -73.7617824 40.6108209 -73.7602364 40.6142547 -73.7666914 40.6136751 -73.773386 40.6118297 -73.7741718 40.6093916 -73.7690008 40.5994225 -73.7711605 40.5978244 -73.7681229 40.5981205 -73.7735855 40.6017445 -73.7749721 40.597753 -73.7813297 40.6043246 -73.774688 40.6091908 -73.7760077 40.6085509 -73.7752385 40.6080248 -73.7748489 40.6074176 -73.7746029 40.6088932 -73.7742223 40.6097374 -73.7753516 40.6096437 -73.7785681 40.5947373 -73.789755 40.5955222 -73.7910362 40.5991917 -73.7903401 40.6032502 -73.7865034 40.5999544 -73.7923326 40.5988443 -73.8029794 40.596895 -73.8052483 40.5966076 -73.8051341 40.5967336 -73.8048646 40.5951978 -73.8036847 40.5951796 -73.8033145 40.5949909 -73.8038951 40.5951456 -73.8032149 40.5944342 -73.8034402 40.594496 -73.8023451 40.5926401 -73.8024385 40.5955546 -73.8060415 40.5941614 -73.8079769 40.5918547 -73.8041657 40.5907587 -73.8057277 40.593577 -73.809612 40.5867699 -73.8214597 40.581864 -73.8392974 40.5821302 -73.8504439 40.5688609 -73.8776058 40.5685872 -73.8926101 40.5627514 -73.9016112 40.5627859 -73.9066472 40.5658694 -73.9119702 40.5615526 -73.9261572 40.5549801 -73.9392541 40.5418201 -73.9407368 40.5556036 -73.9069139 40.5641747 -73.8702759 40.5834731 -73.8135245 40.5903246 -73.7758369 40.5909453 -73.7535424 40.5943015 -73.7466292 40.5944154 -73.7376368 40.597379 -73.7380896 40.5966956 -73.7418308 40.5975658 -73.7380789 40.6027104 -73.7381514 40.6119917 -73.7457615</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.2">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5949467 -73.8366827 40.5962535 -73.8390296 40.5934253 -73.8438589 40.5893286 -73.8335968 40.5921182 -73.832575 40.5949467 -73.8366827</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.3">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6064659 -73.8259009 40.6079198 -73.8271828 40.6079503 -73.8281509 40.6058385 -73.8286167 40.6064659 -73.8259009</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.4">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6059532 -73.8312588 40.6085498 -73.830263 40.6091857 -73.8342834 40.6056369 -73.835876 40.6059532 -73.8312588</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.5">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6083987 -73.827711 40.6084378 -73.8260747 40.6095967 -73.8268833 40.6100463 -73.8280508 40.6083987 -73.827711</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.6">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6241757 -73.83191 40.623936 -73.8335592 40.6213813 -73.8336821 40.6216809 -73.8331082 40.6224147 -73.8330971 40.6241757 -73.83191</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.7">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6539734 -73.8600132 40.6502787 -73.8572233 40.6544762 -73.8597924 40.6552098 -73.8609892 40.6539734 -73.8600132</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.8">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7940359 -73.7807918 40.7911334 -73.7817471 40.788783 -73.7928067 40.7957288 -73.7964095 40.7970794 -73.8136996 40.8010115 -73.8204992 40.7968234 -73.8294599 40.7928785 -73.8279293 40.7885181 -73.8329294 40.7890099 -73.8372805 40.7938511 -73.837065 40.7975889 -73.8402586 40.798509 -73.8378997 40.7976784 -73.8404152 40.7954011 -73.8415872 40.7969222 -73.8428668 40.7949139 -73.8435467 40.7954165 -73.84871 40.7933626 -73.8490616 40.7940184 -73.8536856 40.7886076 -73.8548008 40.7882114 -73.8528423 40.7855306 -73.8595291 40.7819754 -73.8552824 40.7822564 -73.8492468 40.7791693 -73.8523566 40.7780222 -73.848968 40.7718064 -73.8513011 40.7667729 -73.8478058 40.7659911 -73.8391319 40.7601796 -73.8485883 40.761271 -73.8498116 40.7603929 -73.852072 40.7611038 -73.8498748 40.7594488 -73.8506905 40.761917 -73.8585853 40.7616495 -73.856612 40.7640744 -73.8569636 40.7620588 -73.8588437 40.7667645 -73.8627549 40.7688857 -73.8562457 40.7703235 -73.8582051 40.7721954 -73.8550511 40.7808211 -73.8725573 40.787361 -73.8678841 40.7860382 -73.8712486 40.7815094 -73.8751575 40.7828828 -73.8797016 40.7828366 -73.8797478 40.7823982 -73.8788584 40.7805859 -73.8787056 40.7799872 -73.8848811 40.7741326 -73.8839163 40.773533 -73.8894549 40.7777842 -73.8900873 40.7748802 -73.8918324 40.7774046 -73.8925226 40.7821948 -73.8916546 40.7829657 -73.8927492 40.7815856 -73.8953445 40.7842432 -73.8943778 40.7802891 -73.9025793 40.7827111 -73.9011458 40.7856489 -73.8959296 40.7890077 -73.9003263 40.7909455 -73.9098586 40.7765927 -73.9286052 40.7769215 -73.9363802 40.7735629 -73.9378134 40.7700419 -73.9348953 40.764499 -73.9435028 40.7496856 -73.9562014 40.7477348 -73.9531838 40.7488395 -73.9567945 40.7387955 -73.9626082 40.7398199 -73.9537988 40.7379001 -73.9471509 40.7429309 -73.9385879 40.7392486 -73.9414617 40.7375051 -73.945941 40.7358414 -73.9416247 40.73051 -73.9380448 40.7236811 -73.9203706 40.7223205 -73.9251545 40.7160037 -73.9205691 40.715138 -73.9241224 40.7093961 -73.9218918 40.6957004 -73.9042602 40.6941272 -73.905796 40.6914423 -73.9012329 40.6823364 -73.8964663 40.6852832 -73.8941746 40.6834245 -73.8925232 40.6866847 -73.8845225 40.6941913 -73.8740205 40.6947181 -73.8684249 40.6819196 -73.8660199 40.6791648 -73.8623458 40.6712517 -73.8603852 40.6716562 -73.8576332 40.6638675 -73.8556846 40.6634534 -73.8584295 40.6601189 -73.8576154 40.6582765 -73.8631708 40.6569082 -73.860876 40.6584578 -73.8596356 40.6569771 -73.8598336 40.6564148 -73.8613638 40.6513093 -73.8559193 40.6514349 -73.8493977 40.6473881 -73.8524167 40.6441338 -73.849507 40.6454998 -73.8359232 40.6624541 -73.8387361 40.6480998 -73.8343422 40.6490908 -73.8310868 40.6580519 -73.8333844 40.6583188 -73.8311266 40.654885 -73.8318524 40.6560033 -73.8312711 40.6573342 -73.8290943 40.65835 -73.8302443 40.6598041 -73.8301624 40.6586568 -73.8295999 40.6585025 -73.8297071 40.6584026 -73.8301303 40.6577998 -73.8291792 40.6572052 -73.8289678 40.6565063 -73.829376 40.6559192 -73.831161 40.6549798 -73.8314933 40.6544604 -73.832217 40.6539312 -73.8317081 40.6561079 -73.8290142 40.6516261 -73.8309365 40.6480027 -73.823113 40.6600754 -73.8235215 40.6621328 -73.8186718 40.6606281 -73.8113012 40.6593631 -73.8223369 40.6491386 -73.821248 40.6358901 -73.7922232 40.6343104 -73.7908111 40.6310375 -73.7981187 40.6342698 -73.7894966 40.630248 -73.7826454 40.6226148 -73.7896787 40.6226159 -73.7945663 40.6119339 -73.8008013 40.6086464 -73.7927495 40.6129356 -73.7902008 40.614462 -73.7858525 40.6197392 -73.7867561 40.6273155 -73.779469 40.6276517 -73.7765423 40.6236057 -73.771739 40.6192647 -73.7751805 40.6192338 -73.7751189 40.6229958 -73.7721882 40.6229912 -73.7720313 40.623585 -73.7717276 40.623283 -73.7708207 40.6200312 -73.7707702 40.6294122 -73.7650089 40.6354116 -73.7485548 40.6414136 -73.747421 40.6478122 -73.7547559 40.6431867 -73.7472915 40.6369088 -73.747023 40.6390221 -73.7437342 40.6373048 -73.7409649 40.6351192 -73.7424664 40.6351438 -73.7399596 40.6468892 -73.7414371 40.652001 -73.7252261 40.6630439 -73.7283307 40.679588 -73.7256301 40.7099786 -73.7268949 40.7221573 -73.7303263 40.7278309 -73.7076622 40.7392365 -73.7000202 40.7507806 -73.7013472 40.7828934 -73.7508059 40.777704 -73.7555174 40.7732078 -73.7533669 40.7675331 -73.7550721 40.7565581 -73.7446575 40.773799 -73.7651044 40.7798125 -73.7667757 40.7884872 -73.7763373 40.7867567 -73.7742684 40.7884629 -73.7706312 40.7964452 -73.7768705 40.7949239 -73.7832588 40.7940359 -73.7807918</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
              <gml:interior>
                <gml:LinearRing>
                  <gml:posList>40.6554245 -73.8299456 40.6551328 -73.8303273 40.6554286 -73.830266 40.6555228 -73.8298892 40.6554245 -73.8299456</gml:posList>
                </gml:LinearRing>
              </gml:interior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.9">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.7859419 -73.8727741 40.785975 -73.872872 40.7859257 -73.8728535 40.7859031 -73.8728092 40.7859419 -73.8727741</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.10">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5985539 -73.8122207 40.6000675 -73.8099706 40.6027998 -73.8101696 40.6044557 -73.8142869 40.5985539 -73.8122207</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.11">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6048346 -73.8002056 40.60461 -73.7999379 40.605016 -73.7987686 40.604837 -73.7980374 40.6051599 -73.7978114 40.6070644 -73.8003181 40.6043302 -73.8037704 40.6046391 -73.7961522 40.6063578 -73.7976614 40.6059363 -73.7982156 40.6053084 -73.7976633 40.6047201 -73.7979008 40.6045617 -73.8000465 40.6047628 -73.8004863 40.6048346 -73.8002056</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.12">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6072263 -73.8005262 40.6064605 -73.7957014 40.6052306 -73.795727 40.6058143 -73.7952781 40.607355 -73.7955169 40.6089609 -73.796657 40.6061315 -73.8040149 40.6072263 -73.8005262</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.13">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6200635 -73.7852154 40.6140595 -73.785499 40.6124915 -73.7895993 40.6076109 -73.7913972 40.6136037 -73.7809062 40.6179807 -73.7847855 40.6200635 -73.7852154</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.14">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6175011 -73.8177743 40.6214896 -73.8157147 40.6226292 -73.8188939 40.6246047 -73.8161148 40.6297338 -73.8210751 40.6389877 -73.8233759 40.6357474 -73.8259166 40.6385014 -73.8334061 40.6328439 -73.8311465 40.6282613 -73.833041 40.6261776 -73.8306276 40.6231116 -73.8320975 40.6242006 -73.8291881 40.6223908 -73.8303872 40.6209786 -73.8337015 40.6143812 -73.8340189 40.6141321 -73.8255576 40.6084803 -73.8216146 40.612281 -73.8208227 40.610479 -73.819618 40.600797 -73.8244522 40.5999937 -73.8214693 40.5978034 -73.8323936 40.5955434 -73.8348468 40.5946185 -73.8324121 40.5947799 -73.8212014 40.6084639 -73.8147626 40.6129421 -73.8161563 40.6145584 -73.8140806 40.6142823 -73.8164315 40.6175011 -73.8177743</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.15">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6160036 -73.7739769 40.6149109 -73.7667083 40.6205113 -73.7674593 40.6209011 -73.7687345 40.6160036 -73.7739769</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.16">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.619967 -73.801725 40.6185752 -73.7999206 40.6230629 -73.7980909 40.6251565 -73.7936293 40.6240847 -73.7992149 40.626114 -73.7956626 40.6274087 -73.7978353 40.623872 -73.806985 40.6134326 -73.8050891 40.6158798 -73.8012805 40.619967 -73.801725</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.4.extent.17">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6162185 -73.8108999 40.6247038 -73.8112943 40.6292611 -73.8130723 40.630622 -73.8173058 40.6162185 -73.8108999</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
        </gml:MultiSurface>
      </extent>
    </Borough>
  </member>
  <member>
    <Borough gml:id="borough.5">
      <gml:name>Staten Island</gml:name>
      <census>
        <Count>
          <year>2010</year>
          <residents>468730</residents>
        </Count>
      </census>
      <census>
        <Count>
          <year>2020</year>
          <residents>495747</residents>
        </Count>
      </census>
      <area uom="m2">151570404</area>
      <extent>
        <gml:MultiSurface gml:id="borough.5.extent" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.5.extent.1">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.566422 -74.0505081 40.5667225 -74.0510716 40.5653627 -74.0492363 40.5658877 -74.0493164 40.566422 -74.0505081</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.5.extent.2">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.5777027 -74.0531404 40.5799025 -74.0529319 40.5805488 -74.0536863 40.5777824 -74.0548978 40.5777027 -74.0531404</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.5.extent.3">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6414483 -74.159456 40.6433029 -74.1574335 40.644295 -74.1614604 40.6418355 -74.1611124 40.6414483 -74.159456</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
          <gml:surfaceMember>
            <gml:Polygon gml:id="borough.5.extent.4">
              <gml:exterior>
                <gml:LinearRing>
                  <gml:posList>40.6482802 -74.0822127 40.645047 -74.0988007 40.6454637 -74.1097393 40.6415944 -74.1172881 40.6413324 -74.1263681 40.6393191 -74.1270274 40.6418868 -74.1343527 40.6388763 -74.1487779 40.6374378 -74.1485582 40.6393965 -74.1513952 40.6371328 -74.152797 40.639194 -74.1546926 40.6375179 -74.1556986 40.6392754 -74.1569772 40.6378104 -74.1593195 40.6399278 -74.1598641 40.6387657 -74.1622847 40.6406108 -74.1616753 40.6399941 -74.1641689 40.6424066 -74.1660999 40.6425938 -74.1710502 40.6404861 -74.1729799 40.6428558 -74.1713359 40.6451363 -74.1743657 40.6419177 -74.1795871 40.645267 -74.1799651 40.6373912 -74.1946231 40.6303542 -74.2007921 40.6082708 -74.2028163 40.596799 -74.1975136 40.5892857 -74.2046461 40.558357 -74.2120102 40.5546742 -74.2185933 40.5555576 -74.2307104 40.5430932 -74.2480346 40.5343464 -74.2420457 40.5249054 -74.243965 40.5200907 -74.2398226 40.515965 -74.2464404 40.5174756 -74.2485145 40.5169808 -74.2494077 40.5161699 -74.2485459 40.5161375 -74.2499416 40.5150849 -74.2492153 40.5161067 -74.2505601 40.5078377 -74.2555427 40.5004132 -74.2533554 40.4965673 -74.2491716 40.5033414 -74.2175824 40.5118352 -74.207597 40.5130839 -74.1990731 40.5114269 -74.1996721 40.5099777 -74.1952134 40.5193414 -74.1848312 40.520705 -74.1810408 40.5192309 -74.177583 40.5371382 -74.1412983 40.5373469 -74.1410416 40.5379328 -74.1421672 40.5384216 -74.1418379 40.5381404 -74.1422651 40.5422686 -74.142289 40.5435518 -74.1383415 40.5460003 -74.1379497 40.5446826 -74.1368735 40.5468144 -74.1329154 40.541881 -74.127429 40.5355665 -74.1339531 40.5352173 -74.1403781 40.5292819 -74.136908 40.5448581 -74.1224996 40.5478843 -74.1127885 40.5541482 -74.1073483 40.5530258 -74.1048445 40.5667371 -74.0909991 40.5791602 -74.0750829 40.5782755 -74.0733612 40.5792366 -74.0749941 40.5998239 -74.0522298 40.6059127 -74.0538107 40.6246088 -74.072255 40.6299964 -74.0729118 40.6287876 -74.0680217 40.630309 -74.0729847 40.636894 -74.0734156 40.6371619 -74.0704941 40.6372335 -74.0734874 40.6405133 -74.0730773 40.6410689 -74.0699835 40.6409227 -74.0728901 40.6420075 -74.070194 40.641853 -74.073144 40.6425261 -74.0703292 40.6450337 -74.0716583 40.6482802 -74.0822127</gml:posList>
                </gml:LinearRing>
              </gml:exterior>
            </gml:Polygon>
          </gml:surfaceMember>
        </gml:MultiSurface>
      </extent>
    </Borough>
  </member>
  <member>
    <Bridge gml:id="bridge.BRO-1883">
      <gml:name>Brooklyn Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1883-05-24</opened>
      <milestone>Towers completed</milestone>
      <milestone day="1870-01-02">Construction began</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.BRO-1883.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.7075227 -73.9987019 135 40.7059499 -73.9966998 135 40.7043771 -73.9946982 135</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.HEN-1936">
      <gml:name>Henry Hudson Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:3" xlink:title="Arch"/>
      <opened>1936-12-12</opened>
      <milestone day="1936-12-12">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.HEN-1936.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.8766951 -73.9231043 143 40.87765 -73.9222501 143 40.8786048 -73.9213956 143</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.MAN-1909">
      <gml:name>Manhattan Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1909-12-31</opened>
      <milestone day="1909-12-31">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.MAN-1909.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.7091169 -73.9917552 135 40.7072501 -73.9907499 135 40.7053833 -73.9897449 135</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.QUE-1909">
      <gml:name>Queensboro Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:2" xlink:title="Cantilever"/>
      <opened>1909-03-30</opened>
      <milestone day="1909-03-30">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.QUE-1909.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.7583536 -73.958614 130 40.7574999 -73.9568 130 40.7566464 -73.954986 130</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.THR-1961">
      <gml:name>Throgs Neck Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1961-01-11</opened>
      <milestone day="1961-01-11">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.THR-1961.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.8040785 -73.7937949 142 40.80165 -73.7932 142 40.7992215 -73.7926054 142</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.VER-1964">
      <gml:name>Verrazzano-Narrows Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1964-11-21</opened>
      <milestone day="1959-08-13">Construction began</milestone>
      <milestone day="1964-11-21">Upper level opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.VER-1964.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.6053592 -74.0523462 228 40.6066002 -74.0448501 228 40.6078408 -74.0373538 228</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.WHI-1939">
      <gml:name>Bronx-Whitestone Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1939-04-29</opened>
      <milestone day="1939-04-29">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.WHI-1939.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.8044902 -73.8302974 135 40.8014 -73.82945 135 40.7983098 -73.8286026 135</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
  <member>
    <Bridge gml:id="bridge.WIL-1903">
      <gml:name>Williamsburg Bridge</gml:name>
      <kind xlink:href="urn:halvane:example:kinds:1" xlink:title="Suspension"/>
      <opened>1903-12-19</opened>
      <milestone day="1903-12-19">Opened</milestone>
      <centreLine>
        <gml:LineString gml:id="bridge.WIL-1903.line" srsName="http://www.opengis.net/def/crs/EPSG/0/4269">
          <gml:posList srsDimension="3">40.7146076 -73.9749791 135 40.71355 -73.9724501 135 40.7124923 -73.9699209 135</gml:posList>
        </gml:LineString>
      </centreLine>
    </Bridge>
  </member>
</City>